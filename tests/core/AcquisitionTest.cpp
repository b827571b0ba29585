#include "tests/core/GrabberTest.h"

namespace {

const std::vector<std::string> kResetPulse{"write AAReset 1", "status 0", "write AAReset 1", "status 0",
                                           "write AAReset 1", "status 0", "write AAReset 1", "status 0",
                                           "write AAReset 1", "status 0", "write AAReset 0", "status 0"};

std::vector<std::string> joined(const std::vector<std::vector<std::string>>& parts) {
    std::vector<std::string> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// A configured grabber with the control module alone; verbs take the memory that means nothing.
class AcquisitionTest : public ModuleTest {
protected:
    int start(int port = 0, int flag = 1) { return Fg_AcquireEx(handle(), port, 5, flag, FakeBoard::memory()); }
    int stop(int port = 0) { return Fg_stopAcquireEx(handle(), port, FakeBoard::memory(), 0); }
    int status(int port = 0, int param = 100) { return Fg_getStatusEx(handle(), param, 0, port, nullptr); }
    Fg_ImageControl& images() { return *master().getImageControl(); }
};

TEST_F(AcquisitionTest, StartPulsesResetThenStartsDmaThenGlobalWork) {
    for (const auto& [flag, mode] : {
             std::pair{1, 16},
             {2, 32}
    }) {
        board.clearEvents();
        EXPECT_EQ(start(0, flag), 0);
        const std::string dma = "start path=0 mode=" + std::to_string(mode) + " count=5 timeout=20";
        EXPECT_THAT(board.events, ElementsAreArray(joined({
                                      kResetPulse, {dma, "write AAglobal_work 1", "status 0"}
        })));
        EXPECT_EQ(images().getImageDMAMode(0), flag);
        EXPECT_EQ(status(), 0);
        EXPECT_EQ(get(FG_DMASTATUS), 1);
        board.clearEvents();
        EXPECT_EQ(stop(), 0);
        EXPECT_THAT(board.events, ElementsAreArray(joined({
                                      {"stop path=0", "write AAglobal_work 0", "status 0"},
                                      kResetPulse
        })));
        EXPECT_EQ(status(), 1);
        EXPECT_EQ(get(FG_DMASTATUS), 0);
        EXPECT_EQ(images().getMemory(0), FakeBoard::memory());
    }
}

TEST_F(AcquisitionTest, SecondStartIsRefusedUntilAStop) {
    EXPECT_EQ(start(), 0);
    board.clearEvents();
    EXPECT_EQ(start(), -2090);
    EXPECT_EQ(lastError(), -2090);
    EXPECT_THAT(board.events, IsEmpty());
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(lastError(), 0);
    EXPECT_EQ(stop(), -3010);
    EXPECT_EQ(lastError(), -3010);
    EXPECT_EQ(Fg_stopAcquireEx(handle(), 0, nullptr, 0), -2070);
    EXPECT_EQ(lastError(), -2070);
    EXPECT_EQ(start(0), 0);
    EXPECT_EQ(start(1), -2090);
    EXPECT_EQ(master().getActivePort(), 1) << "a refused second start has switched";
    EXPECT_EQ(images().getMemory(1), FakeBoard::memory());
    EXPECT_EQ(get(FG_DMASTATUS, 1), 0);
    EXPECT_EQ(stop(1), 0);
}

TEST_F(AcquisitionTest, FailingStartLeavesThePathIdleAndGlobalWorkOn) {
    board.startResult = -88;
    EXPECT_EQ(start(0, 2), -88);
    EXPECT_EQ(lastError(), -88);
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(get(FG_DMASTATUS), 0);
    EXPECT_EQ(images().getImageDMAMode(0), 2);
    EXPECT_EQ(board.value("AAglobal_work"), 1U);
    EXPECT_EQ(stop(), -3010);
    board.startResult = 7;
    EXPECT_EQ(start(), 0);
}

TEST_F(AcquisitionTest, FailingStopReversesTheOrderAndCanBeTriedAgain) {
    EXPECT_EQ(start(), 0);
    board.clearEvents();
    for (const int code : {-1, -2042, -777}) {
        board.stopResult = code;
        EXPECT_EQ(stop(), -2042);
        EXPECT_EQ(lastError(), -2042);
    }
    const auto once = joined({
        {"stop path=0"},
        kResetPulse, {"write AAglobal_work 0", "status 0"}
    });
    EXPECT_THAT(board.events, ElementsAreArray(joined({once, once, once})));
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(get(FG_DMASTATUS), 1);
    board.stopResult = 0;
    EXPECT_EQ(stop(), 0);
}

TEST_F(AcquisitionTest, LastPicturePassesThePortAndFoldsFailures) {
    board.testResult = 12;
    EXPECT_EQ(Fg_getLastPicNumberEx(handle(), 1, FakeBoard::memory()), 12);
    EXPECT_EQ(lastError(), 0);
    board.testResult = -5;
    EXPECT_EQ(Fg_getLastPicNumberEx(handle(), 0, FakeBoard::memory()), -2120);
    EXPECT_EQ(lastError(), -2120);
    board.testResult = 0;
    EXPECT_EQ(Fg_getLastPicNumberEx(handle(), 0, FakeBoard::memory()), 0);
    EXPECT_EQ(lastError(), 0);
    EXPECT_EQ(Fg_getLastPicNumberEx(handle(), 0, nullptr), -2070);
    EXPECT_EQ(lastError(), -2070);
    EXPECT_THAT(board.events, ElementsAre("test path=1", "test path=0", "test path=0"));
}

TEST_F(AcquisitionTest, BlockingWaitUsesPathZeroAndRecordsZeroAsItIs) {
    struct Case {
        int result, recorded;
    };
    for (const Case& c : {
             Case{9,     0    },
             {0,     0    },
             {-2120, -2120},
             {-3,    -3   }
    }) {
        board.waitResult = c.result;
        EXPECT_EQ(Fg_getLastPicNumberBlockingEx(handle(), 4, 1, 2, FakeBoard::memory()), c.result);
        EXPECT_EQ(lastError(), c.recorded);
    }
    EXPECT_THAT(board.events, ElementsAre("wait path=0 picture=4 timeout=2", "wait path=0 picture=4 timeout=2",
                                          "wait path=0 picture=4 timeout=2", "wait path=0 picture=4 timeout=2"));
    board.clearEvents();
    EXPECT_EQ(Fg_getLastPicNumberBlockingEx(handle(), 4, 0, -1, FakeBoard::memory()), -2070);
    EXPECT_EQ(Fg_getLastPicNumberBlockingEx(handle(), 4, 0, 0, nullptr), -2070);
    EXPECT_EQ(lastError(), -2070);
    EXPECT_THAT(board.events, IsEmpty());
    EXPECT_EQ(Fg_getLastPicNumberBlockingEx(handle(), 4, 7, 0, FakeBoard::memory()), -3);
    EXPECT_THAT(board.events, ElementsAre("wait path=0 picture=4 timeout=0"));
}

TEST_F(AcquisitionTest, BadFlagIsRefusedAfterTheMemoryWasRemembered) {
    for (const int flag : {0, 3, -1, 16}) {
        EXPECT_EQ(start(1, flag), -2070);
        EXPECT_EQ(lastError(), -2070);
    }
    EXPECT_EQ(images().getMemory(1), FakeBoard::memory());
    EXPECT_EQ(images().getMemory(0), nullptr);
    EXPECT_EQ(master().getActivePort(), 0);
    EXPECT_THAT(board.events, IsEmpty());
}

TEST_F(AcquisitionTest, TagsCountBuffersAndLengthsCountPictures) {
    images().setMemory(0, FakeBoard::memory());
    EXPECT_EQ(images().getImageTag(0, 1), 1000);
    EXPECT_EQ(images().getImageTagEx(5, FakeBoard::memory()), 1004);
    EXPECT_EQ(images().getImageTransferLength(0, 5), 500U);
    EXPECT_EQ(images().getImageTransferLength(FakeBoard::memory(), 6), 600U);
    EXPECT_THAT(board.events, ElementsAre("tag 0", "tag 4", "length 5", "length 6"));
}

TEST_F(AcquisitionTest, StartTakesTheTimeoutOfItsPath) {
    EXPECT_EQ(set(FG_TIMEOUT, 3), -6000) << "no limits have been published yet";
    EXPECT_EQ(load(FG_TIMEOUT, 3), 0);
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(board.eventsOf("start "), ElementsAre("path=0 mode=16 count=5 timeout=3"));
}

}  // namespace
