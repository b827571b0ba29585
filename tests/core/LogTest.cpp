#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "StandardApplets/grabber_basis/Fg_Log.h"

namespace {

/// A log whose stream the test can open, on memory.
class OpenableLog : public Fg_Log {
public:
    OpenableLog() : Fg_Log("a_name_that_is_not_used.log") {}
    ~OpenableLog() {
        CloseLogFile();
        std::free(mText);
    }
    void open() { mHandleToFile = open_memstream(&mText, &mSize); }
    bool isOpen() const { return mHandleToFile != nullptr; }
    /// \return what has reached the stream, without a flush of the test's own
    std::string text() const { return mText == nullptr ? std::string() : std::string(mText, mSize); }

private:
    char* mText = nullptr;
    size_t mSize = 0;
};

void writeEverything(OpenableLog& log) {
    log.Func("Fg_StdMaster::Fg_Acquire");
    log.Info("nothing");
    log.Info("Port", -3);
    log.Error("Config File is Invalid");
    log.ErrorInt("a", "b", 7);
    log.ErrorDouble("a", "b", 0.1);
    log.UsrDbg("%s=%d", "x", 5);
    log.WriteWelcome();
}

TEST(LogTest, ClosedLogWritesNothing) {
    OpenableLog log;
    writeEverything(log);
    log.OpenLogFile("a_name_that_is_not_used.log");
    EXPECT_FALSE(log.isOpen());
    writeEverything(log);
    log.CloseLogFile();
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(std::fopen("a_name_that_is_not_used.log", "r"), nullptr);
}

TEST(LogTest, LinesHaveTheirFormatAndAreFlushed) {
    OpenableLog log;
    log.open();
    std::string expected;
    const auto expectAdded = [&](const std::string& line) {
        expected += line;
        EXPECT_EQ(log.text(), expected);
    };
    log.Func("not written");
    log.Info("not written");
    log.Info("Port", -3);
    expectAdded("fabrixIV::Info >> Port >> -3;\n");
    log.Error("Config File is Invalid");
    expectAdded("fabrixIV::Error >> Config File is Invalid;\n");
    log.ErrorInt("a", "b", 7);
    expectAdded("fabrixIV::Error >> a >> b >> 7;\n");
    log.ErrorDouble("a", "b", 1.0 / 3.0);
    expectAdded("fabrixIV::Error >> a >> b >> 0.333333333333;\n");
    log.ErrorDouble("a", "b", -1.2345678901234567e-300);
    expectAdded("fabrixIV::Error >> a >> b >> -1.23456789012e-300;\n");
}

}  // namespace
