// The register trace of one start-up, held against docs/startup-trace.txt line by line.
//
// After a change of the start-up, write the file anew and read the difference:
//     QUILLON_WRITE_TRACE=1 build/release/tests/applet_tests --gtest_filter='StartUpTrace*' && git diff docs
#include <algorithm>
#include <fstream>

#include "tests/applet/AppletLibrary.h"
#include "tests/core/DesignRegisters.h"

namespace {

const char* const kFile = QUILLON_SOURCE "/docs/startup-trace.txt";

const char* const kHead =
    "# What one start-up does with the board, in order: the configuration of the FPGA, register writes by name\n"
    "# (a question mark where the design has no such register), register reads, and status queries by connector.\n"
    "# A load of the knee lookup table is one line that counts its writes.\n"
    "# applet_tests holds the applet against this file; tests/applet/StartUpTraceTest.cpp says how to write it anew.\n";

std::string registerName(const std::string& handle) {
    const size_t number = std::stoul(handle);
    return number == 0 || number > designRegisters().size() ? "?" : designRegisters()[number - 1].name;
}

/// \return a recorded call in the words of the file
std::string lineOf(const std::string& call) {
    std::istringstream words(call);
    std::string operation;
    std::string board;
    std::string first;
    std::string second;
    words >> operation >> board >> first >> second;
    if (operation == "TavoConfigureFpga") return "configure";
    if (operation == "TavoRegisterWrite") return "write " + registerName(first) + " " + second;
    if (operation == "TavoRegisterRead") return "read " + registerName(first);
    if (operation == "TavoGetCameraStatusExtended") return "status " + first;
    return call;
}

/// \return the calls in the words of the file; a load of the knee lookup table is one line that counts its writes
std::vector<std::string> linesOf(const std::vector<std::string>& calls) {
    std::vector<std::string> lines;
    int tableWrites = 0;
    for (const std::string& call : calls) {
        const std::string line = lineOf(call);
        const bool isTable = line.starts_with("write AAKneeLut");
        if (isTable && tableWrites++ > 0) lines.pop_back();
        if (!isTable) tableWrites = 0;
        lines.push_back(isTable ? "write AAKneeLut... " + std::to_string(tableWrites) + " times" : line);
    }
    return lines;
}

/// \return the lines of the file, without its head
std::vector<std::string> documented() {
    std::ifstream file(kFile);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("#")) lines.push_back(line);
    }
    return lines;
}

class StartUpTraceTest : public testing::Test {
protected:
    StartUpTraceTest() {
        Installation tree;
        const Library applet(tree.addApplet());
        const AppletFunctions functions{applet};
        const Stub board(tree.addStub("stub", "tavo_hw"));
        const Stub runtime(tree.addStub("stub", "haprt"));
        runtime.answer("HapLoadDesignFromBuffer", 0x2002);
        int err = -1;
        Fg_Struct grabber{functions.Std_entry(device(), &err, 0)};
        EXPECT_EQ(err, 0);
        trace = linesOf(board.takeCalls());
        functions.Fg_FreeGrabber(&grabber);
        tearDown = linesOf(board.takeCalls());
    }

    const Variable mDirect{"TAVO_ENABLE_DRA", nullptr};
    const Variable mExternal{"__TAVO_FORCE_EXTERNAL_HAP", nullptr};
    std::vector<std::string> trace;
    std::vector<std::string> tearDown;
};

TEST_F(StartUpTraceTest, IsTheDocumentedOne) {
    if (getenv("QUILLON_WRITE_TRACE") != nullptr) {
        std::ofstream file(kFile, std::ios::trunc);
        file << kHead;
        for (const std::string& line : trace) file << line << '\n';
        ASSERT_TRUE(file.good()) << kFile;
    }
    const std::vector<std::string> expected = documented();
    ASSERT_FALSE(expected.empty()) << kFile;
    for (size_t i = 0; i < std::max(trace.size(), expected.size()); ++i) {
        ASSERT_EQ(i < trace.size() ? trace[i] : "the end", i < expected.size() ? expected[i] : "the end")
            << "line " << i + 1 << " of the trace";
    }
}

TEST_F(StartUpTraceTest, TearDownSwitchesBothCameraPortsOff) {
    EXPECT_THAT(tearDown, testing::ElementsAre("write AACamPortEnable 0", "write ABCamPortEnable 0"));
}

}  // namespace
