#include <fstream>
#include <iterator>
#include <thread>

#include "board/BoardFixture.h"
#include "simulation/board/BoardEnvironment.h"
#include "tests/TemporaryFolder.h"

using namespace simulation;

namespace {

using BoardTest = BoardFixture;

TEST_F(BoardTest, AnswersNothingBeforeItIsConfigured) {
    Board board;
    uint64_t value = 0;
    EXPECT_EQ(board.writeRegister(1, 1), kNotConfigured);
    EXPECT_EQ(board.readRegister(1, &value), kNotConfigured);
    EXPECT_EQ(board.cameraStatus(0), kNotConfigured);
    EXPECT_EQ(board.startDma({}, nullptr).code, kNotConfigured);
    EXPECT_EQ(board.configure(nullptr), kBadDesign);
    EXPECT_EQ(board.stopDma(0), 0);
    EXPECT_EQ(mBoard.readRegister(1, nullptr), kBadArgument);
}

TEST_F(BoardTest, ConfiguringEndsATransferAndRestoresTheRegisters) {
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(startFlowing(-1), 0);
    EXPECT_GE(buffers.wait(1, 20), 1);
    EXPECT_EQ(mBoard.configure(&mDesign), 0);
    EXPECT_FALSE(buffers.isRunning());
    EXPECT_EQ(read(kGlobalWork), 0u);
}

TEST_F(BoardTest, CameraAndInputsKeepToPossibleRates) {
    for (const double rate : {0.01, 100'000.0}) {
        EXPECT_EQ(mBoard.setRate(rate).code, 0) << rate;
        EXPECT_EQ(mBoard.setInputRate(5, rate).code, 0) << rate;
    }
    for (const double rate : {0.009, 100'001.0}) {
        EXPECT_EQ(mBoard.setRate(rate).code, kBadSetting) << rate;
        EXPECT_EQ(mBoard.setInputRate(5, rate).code, kBadSetting) << rate;
    }
}

TEST_F(BoardTest, ValuesAreCutToTheWidthOfTheirRegister) {
    write(kAreaWidth, 0x1234);
    EXPECT_EQ(read(kAreaWidth), 0x234u);
}

TEST_F(BoardTest, TheCounterFollowsTheClockOf62500Kilohertz) {
    write(kCounterControl, 1);
    write(kCounterControl, 2);
    const Stopwatch inner;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const double least = inner.seconds();
    write(kCounterControl, 0);
    const auto count = static_cast<double>(read(kCounter));
    EXPECT_GE(count, least * 62.5e6 - 1);
    EXPECT_LT(count, 62.5e6) << "less than a second";
    EXPECT_EQ(static_cast<double>(read(kCounter)), count) << "stopped";
    write(kCounterControl, 1);
    EXPECT_EQ(read(kCounter), 0u);
    EXPECT_EQ(mBoard.writeRegister(kCounter, 5), kReadOnly);
}

TEST_F(BoardTest, TheTraceNamesWhatTheHostDid) {
    mBoard.trace().keep(true);
    EXPECT_EQ(mBoard.configure(&mDesign), 0);
    write(kReset, 3);
    EXPECT_EQ(mBoard.writeRegister(0, 63), kNoRegister);
    EXPECT_EQ(mBoard.writeRegister(kCounter, 1), kReadOnly);
    EXPECT_EQ(mBoard.cameraStatus(0), 7);
    addBuffers(1);
    EXPECT_EQ(start(5), 0);
    EXPECT_EQ(mBoard.stopDma(0), 0);
    EXPECT_THAT(mBoard.trace().lines(),
                ElementsAre("configure", "write AAReset 3", "write handle 0 63 refused -9002",
                            "write AAFreqCount 1 refused -9003", "camera-status 0",
                            "dma start port 0 buffer 0 mode 16 transfers 5", "dma stop port 0"));
    mBoard.trace().keep(false);
    write(kReset, 0);
    EXPECT_EQ(mBoard.trace().lines().size(), 7u);
    mBoard.trace().keep(true);
    EXPECT_THAT(mBoard.trace().lines(), IsEmpty());
}

TEST(FaultPlanTest, FailsTheNthCallOnce) {
    FaultPlan plan;
    plan.add({"TavoDmaStop", 2, -5});
    plan.add({"TavoDmaStop", 3, -6});
    plan.add({"TavoRegisterWrite", 1, -7});
    EXPECT_EQ(plan.nextCall("TavoDmaStop"), 0);
    EXPECT_EQ(plan.nextCall("TavoDmaStop"), -5);
    EXPECT_EQ(plan.nextCall("TavoRegisterWrite"), -7);
    EXPECT_EQ(plan.nextCall("TavoRegisterWrite"), 0);
    EXPECT_EQ(plan.nextCall("TavoDmaStop"), -6);
    EXPECT_EQ(plan.nextCall("TavoDmaStop"), 0);
    plan.add({"TavoDmaStop", 1, -5});
    plan.clear();
    EXPECT_EQ(plan.nextCall("TavoDmaStop"), 0);
}

/// Sets environment variables and takes them away again.
class EnvironmentTest : public BoardFixture {
protected:
    ~EnvironmentTest() override {
        for (const char* name : mSet) unsetenv(name);
    }
    Outcome apply(const char* name, const std::string& text) {
        setenv(name, text.c_str(), 1);
        mSet.push_back(name);
        return mEnvironment.apply(mBoard, 0);
    }

    BoardEnvironment mEnvironment;
    std::vector<const char*> mSet;
};

TEST_F(EnvironmentTest, RefusesFaultyTextsWithTheVariableAndTheReason) {
    const std::tuple<const char*, const char*, const char*> faults[]{
        {"TAVO_SIM_CAMERA",           "/nonexistent",         "/nonexistent: the picture folder cannot be read"},
        {"TAVO_SIM_SCENE",            "640",                  "WIDTHxHEIGHT is wanted"                         },
        {"TAVO_SIM_SCENE",            "-1x480",               "WIDTHxHEIGHT is wanted"                         },
        {"TAVO_SIM_SCENE",            "8x8",                  "8x8 pixels cannot be had"                       },
        {"TAVO_SIM_GEOMETRY",         "2",                    "there is no geometry \"2\""                     },
        {"TAVO_SIM_INPUTS",           "256",                  "0 to 255"                                       },
        {"TAVO_SIM_INPUT_RATE",       "8:10",                 "no digital input 8"                             },
        {"TAVO_SIM_CAMERA_TRIGGER",   "cc5",                  "auto, free or cc1 to cc4"                       },
        {"TAVO_SIM_READOUT_TIME",     "long",                 "a number of microseconds"                       },
        {"TAVO_SIM_RATE",             "fast",                 "a number of frames/s"                           },
        {"TAVO_SIM_RATE",             "nan",                  "cannot be had"                                  },
        {"TAVO_SIM_MODE",             "Fast",                 "realtime or fast is wanted"                     },
        {"TAVO_SIM_LINK",             "2",                    "0 or 1 is wanted"                               },
        {"TAVO_SIM_DROP",             "101",                  "0 to 100"                                       },
        {"TAVO_SIM_DROP",             "5:-1",                 "PERCENT or PERCENT:SEED is wanted"              },
        {"TAVO_SIM_LINK_GAP",         "100",                  "AFTER:LENGTH in milliseconds is wanted"         },
        {"TAVO_SIM_DMA_GAP",          "-1:100",               "cannot be had"                                  },
        {"TAVO_SIM_FIRST_TAG",        "2147483648",           "0 to 2147483647"                                },
        {"TAVO_SIM_FIRST_TIME_STAMP", "18446744073709551616", "a number of nanoseconds is wanted"              },
        {"TAVO_SIM_REGISTER_DELAY",   "1000001",              "0 to 1000000"                                   },
        {"TAVO_SIM_FAULT",            "TavoDmaStopp:1:-5",    "there is no operation \"TavoDmaStopp\""         },
        {"TAVO_SIM_FAULT",            "TavoDmaStop:0:-5",     "OPERATION:N:CODE is wanted"                     },
        {"TAVO_SIM_TRACE",            "/nonexistent/trace",   "cannot be written"                              },
    };
    for (const auto& [name, text, reason] : faults) {
        SCOPED_TRACE(testing::Message() << name << "=" << text);
        const Outcome outcome = apply(name, text);
        EXPECT_EQ(outcome.code, kBadSetting);
        EXPECT_THAT(outcome.text, AllOf(HasSubstr(name), HasSubstr(reason)));
        unsetenv(name);
    }
}

TEST_F(EnvironmentTest, SetsUpEveryDisturbance) {
    const Disturbances& set = mBoard.disturbances();
    EXPECT_EQ(apply("TAVO_SIM_LINK_GAP", "0.5:10").code, 0);
    EXPECT_FALSE(set.linkIsDown(std::chrono::microseconds(499)));
    EXPECT_TRUE(set.linkIsDown(std::chrono::microseconds(500)));
    EXPECT_TRUE(set.linkIsDown(std::chrono::microseconds(10'499)));
    EXPECT_FALSE(set.linkIsDown(std::chrono::microseconds(10'500)));
    EXPECT_EQ(apply("TAVO_SIM_DMA_GAP", "0:1").code, 0);
    EXPECT_EQ(set.lossOf(1, BoardTime(0)), Loss::held);
    EXPECT_EQ(set.lossOf(1, std::chrono::milliseconds(1)), Loss::none);
    EXPECT_EQ(apply("TAVO_SIM_DROP", "100").code, 0);
    EXPECT_EQ(set.lossOf(1, BoardTime(0)), Loss::dropped);
    EXPECT_EQ(apply("TAVO_SIM_FIRST_TAG", "2147483647").code, 0);
    EXPECT_EQ(set.tagOf(1), 2147483647u);
    EXPECT_EQ(apply("TAVO_SIM_FIRST_TIME_STAMP", "18446744073709551615").code, 0);
    EXPECT_EQ(set.timeStampOf(BoardTime(3)), 2u);
    EXPECT_EQ(apply("TAVO_SIM_REGISTER_DELAY", "20000").code, 0);
    const Stopwatch watch;
    write(kReset, 1);
    read(kReset);
    EXPECT_GE(watch.seconds(), 0.04);
}

TEST_F(EnvironmentTest, AppliesAVariableAgainOnlyWhenItsTextChanges) {
    EXPECT_EQ(apply("TAVO_SIM_FAULT", "TavoDmaStop:1:-5,HapUnloadHapFile:1:-1").code, 0);
    EXPECT_EQ(apply("TAVO_SIM_LINK", "0").code, 0);
    EXPECT_EQ(mBoard.cameraStatus(0), 0);
    EXPECT_EQ(mBoard.faults().nextCall("TavoDmaStop"), -5);
    mBoard.setLink(true);
    EXPECT_EQ(mEnvironment.apply(mBoard, 0).code, 0);
    EXPECT_EQ(mBoard.cameraStatus(0), 7) << "what a program has set stays";
    EXPECT_EQ(mBoard.faults().nextCall("TavoDmaStop"), 0) << "the fault has been had";
    EXPECT_EQ(apply("TAVO_SIM_FAULT", "TavoDmaStop:1:-6").code, 0);
    EXPECT_EQ(mBoard.faults().nextCall("TavoDmaStop"), -6);
}

TEST_F(BoardTest, TheLinkShowsOnEveryConnector) {
    for (const unsigned connector : {0u, 1u, 2u}) EXPECT_EQ(mBoard.cameraStatus(connector), 7);
    EXPECT_EQ(mBoard.cameraStatus(3), 0);
    EXPECT_EQ(mBoard.cameraStatus(4294967295u), 0);
    mBoard.setLink(false);
    EXPECT_EQ(mBoard.cameraStatus(1), 0);
}

TEST_F(EnvironmentTest, EveryBoardWritesATraceOfItsOwn) {
    const TemporaryFolder folder;
    folder.write("trace.3", "old\n");
    const std::string path = folder.file("trace");
    setenv("TAVO_SIM_TRACE", path.c_str(), 1);
    mSet.push_back("TAVO_SIM_TRACE");
    EXPECT_EQ(mEnvironment.apply(mBoard, 3).code, 0);
    write(kReset, 1);
    EXPECT_EQ(folder.content("trace.3"), "write AAReset 1\n");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(EnvironmentTest, RefusesTwoCameras) {
    EXPECT_EQ(apply("TAVO_SIM_SCENE", "64x32").code, 0);
    const Outcome outcome = apply("TAVO_SIM_CAMERA", QUILLON_SOURCE "/simulation/pictures");
    EXPECT_EQ(outcome.code, kBadSetting);
    EXPECT_THAT(outcome.text, HasSubstr("both set"));
}

}  // namespace
