// The parameter side of the area trigger: what a user sees, and how the values bound each other.
#include <array>

#include "tests/core/AreaTriggerFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AreaTriggerParameterTest : public AreaTriggerFixture {
protected:
    struct Entry {
        std::string name;
        int value;
        std::string defName;
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> entries(int id, unsigned port = 0) {
        const Fx3ENUMData& data = *record(id).data.enumData;
        std::vector<Entry> found;
        for (size_t i = 0; i < data.valueIdTable[port].size(); ++i) {
            found.push_back({data.valueNameTable[port][i], data.valueIdTable[port][i],
                             data.valueDefNameTable[port][i].value_or("")});
        }
        return found;
    }
    /// \return a group of the tree as one text, "Name(FG_A FG_B Sub(FG_C))"
    static std::string groupText(const RegisterInfo& node) {
        if (node.format != REG_FORMAT_GROUP) return node.parameterName;
        std::string text;
        for (int i = 0; i < node.u.gReg.nrOfElements; ++i) {
            text += (i == 0 ? "" : " ") + groupText(*node.u.gReg.elements[i]);
        }
        return std::string(node.name) + "(" + text + ")";
    }
    std::string tree(int port) {
        const RegisterInfo* top = master().getHeader()->getRegisterInfo(port);
        return top == nullptr ? "" : groupText(*top);
    }
};

struct Published {
    int id;
    FX3ParamType type;
    const char *defineName, *name, *unit, *description;
    const char* access;  // bits in the modes 0, 1, 3, 2, 4, 7 and 5
    int range, visibility, isSaved;
};
// clang-format off
const std::vector<Published> kPublished{
    {90, TYPE_DOUBLE, "FG_FRAMESPERSEC", "Frames/Sec.", "[Hz]", "Frequency of the ExSync generation (=frame rate). Only available in grabber controlled trigger mode.", "1771111", 2, 1, 1},
    {8100, TYPE_ENUM, "FG_TRIGGERMODE", "Mode", "", "Trigger mode for the ExSync generation.", "7777777", 1, 1, 1},
    {8110, TYPE_ENUM, "FG_TRIGGERINSRC", "Source", "", "Trigger input signal on the trigger board for the ExSync generation.", "1117111", 1, 1, 1},
    {8116, TYPE_ENUM, "FG_TRIGGERINPOLARITY", "Polarity", "", "Polarity of the trigger input signal.", "1117111", 1, 1, 1},
    {8200, TYPE_ENUM, "FG_EXSYNCINVERT", "Invert", "", "ExSync invert", "1777771", 1, 0, 1},
    {8300, TYPE_ENUM, "FG_EXSYNCON", "Exsync Enable", "", "Switch the ExSync signal on or off.", "1777771", 1, 1, 1},
    {8400, TYPE_DOUBLE, "FG_EXSYNCDELAY", "Exsync Delay", "[us]", "Delay of the ExSync signal with respect to the trigger input signal.", "1777771", 2, 1, 1},
    {8420, TYPE_ENUM, "FG_EXSYNCPOLARITY", "Polarity", "", "Polarity of the ExSync out signal.", "1777771", 1, 1, 1},
    {8600, TYPE_ENUM, "FG_FLASHON", "Flash", "", "Switch the Flash signal on or off.", "1777771", 1, 1, 1},
    {8700, TYPE_DOUBLE, "FG_STROBEPULSEDELAY", "Delay", "[us]", "Delay of the flash signal out with respect to the trigger input signal.", "1777771", 2, 1, 1},
    {8740, TYPE_DOUBLE, "FG_FLASHTIME", "Flashtime", "[us]", "Length of the Flash signal in microseconds.", "1777771", 1, 1, 1},
    {8750, TYPE_ENUM, "FG_FLASHTIME_SYNC", "Flashtime Synchronisation", "", "Force Flash signal and ExSync signal to be of same length.", "1777771", 1, 1, 1},
    {8800, TYPE_INT, "FG_SENDSOFTWARETRIGGER", "Send pulses", "", "Generate software triggers.", "0000660", 2, 1, 0},
    {8802, TYPE_INT, "FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL", "Queue Filllevel", "", "Filling level of software trigger queue.", "1111111", 1, 1, 0},
    {8950, TYPE_INT, "FG_LIMIT_TRIGGER_PULSES", "NrOfTriggerPulses", "[pulses]", "Number of used trigger pulses.", "7777777", 1, 1, 1},
    {10020, TYPE_INT, "FG_EXPOSURE", "Exposure", "[us]", "Length of the ExSync exposure in microseconds.", "1777771", 2, 1, 1},
    {10050, TYPE_DOUBLE, "FG_PRESCALER", "Time Base", "[us]", "Time base.", "1777771", 2, 1, 1},
    {24060, TYPE_ENUM, "FG_FLASH_POLARITY", "Polarity", "", "Polarity of the Flash out signal.", "1777771", 1, 1, 1},
};
// clang-format on

TEST_F(AreaTriggerParameterTest, ParametersHaveTheirNamesAndFlags) {
    open();
    for (const Published& row : kPublished) {
        SCOPED_TRACE(row.defineName);
        const Fx3Parameter& parameter = record(row.id);
        EXPECT_EQ(parameter.data.type, row.type);
        EXPECT_EQ(parameter.description.defineName, row.defineName);
        EXPECT_EQ(parameter.description.parameterName, row.name);
        EXPECT_EQ(parameter.description.unit.value_or(""), row.unit);
        EXPECT_EQ(parameter.description.docDescription, row.description);
        EXPECT_FALSE(parameter.description.updateAll);
        EXPECT_STREQ(parameter.mParent->getDocModuleURL(row.id), "feature_blocks/PSTrigger/PSAreaTrigger.html");
        EXPECT_EQ(parameter.access.rangeFlag[0], row.range);
        EXPECT_EQ(parameter.access.visibilityFlag[0], row.visibility);
        EXPECT_EQ(parameter.access.writeToConfigFile[0], row.isSaved);
    }
    master().setIsArea(0, 0);
    mTrigger->setFlags(0);
    EXPECT_EQ(record(FG_EXPOSURE).access.writeToConfigFile[0], 0) << "a line camera saves nothing of it";
    EXPECT_EQ(record(FG_EXPOSURE).access.writeToConfigFile[1], 1);
}

TEST_F(AreaTriggerParameterTest, AccessFollowsTheModeOfThePort) {
    constexpr std::array kModes{0, 1, 3, 2, 4, 7, 5};
    open();
    for (size_t column = 0; column < kModes.size(); ++column) {
        load(FG_TRIGGERMODE, kModes[column]);
        for (const Published& row : kPublished) {
            EXPECT_EQ(access(row.id), row.access[column] - '0') << row.defineName << " in mode " << kModes[column];
            EXPECT_EQ(access(row.id, 1), row.access[0] - '0') << "port 1 stays in mode 0";
        }
    }
}

TEST_F(AreaTriggerParameterTest, LimitsAfterTheDefaults) {
    struct Row {
        int id;
        double from, to, step, value;
    };
    const auto expectLimits = [&](const auto& limits, const Row& row, auto value, unsigned port) {
        SCOPED_TRACE(testing::Message() << row.id << " on port " << port);
        EXPECT_DOUBLE_EQ(limits.from[port], row.from);
        EXPECT_DOUBLE_EQ(limits.to[port], row.to);
        EXPECT_DOUBLE_EQ(limits.step[port], row.step);
        EXPECT_DOUBLE_EQ(limits.defaultValue[port], row.value);
        EXPECT_DOUBLE_EQ(value, row.value);
    };
    open();
    for (const unsigned port : {0u, 1u}) {
        for (const Row& row : {
                 Row{FG_PRESCALER,        0.496,             1048.576,           0.032,             10.0  },
                 Row{FG_FRAMESPERSEC,     0.095367431640625, 248.75621890547265, 0.095367431640625, 8.0   },
                 Row{FG_EXSYNCDELAY,      0.0,               10485750.0,         10.0,              0.0   },
                 Row{FG_STROBEPULSEDELAY, 0.0,               10485750.0,         10.0,              0.0   },
                 Row{FG_FLASHTIME,        20.0,              10485760.0,         0.032,             4000.0},
        }) {
            expectLimits(*record(row.id).data.doubleData, row, get<double>(row.id, static_cast<int>(port)), port);
        }
        for (const Row& row : {
                 Row{FG_EXPOSURE,                        20, 124980,     1, 4000},
                 Row{FG_LIMIT_TRIGGER_PULSES,            0,  2000000000, 1, 0   },
                 Row{FG_SENDSOFTWARETRIGGER,             1,  1,          1, 1   },
                 Row{FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, 0,  255,        1, 0   },
        }) {
            expectLimits(*record(row.id).data.intData, row, get(row.id, static_cast<int>(port)), port);
        }
    }
}

TEST_F(AreaTriggerParameterTest, EnumerationsHaveTheirEntriesAndDefaults) {
    open();
    const std::vector<Entry> onOff{
        {"On",  1, "FG_ON" },
        {"Off", 0, "FG_OFF"}
    };
    const std::vector<Entry> lowHigh{
        {"Low",  0, "Low" },
        {"High", 1, "High"}
    };
    for (const int id : {FG_EXSYNCON, FG_FLASHON, FG_FLASHTIME_SYNC, FG_EXSYNCINVERT}) EXPECT_EQ(entries(id), onOff);
    for (const int id : {FG_EXSYNCPOLARITY, FG_FLASH_POLARITY}) EXPECT_EQ(entries(id), lowHigh);
    EXPECT_THAT(entries(FG_TRIGGERINPOLARITY), ElementsAre(Entry{"High", 0, "High"}, Entry{"Low", 1, "Low"}));
    EXPECT_THAT(
        entries(FG_TRIGGERMODE),
        ElementsAre(Entry{"FreeRun", 0, "FREE_RUN"}, Entry{"GrabberControlled", 1, "GRABBER_CONTROLLED"},
                    Entry{"ExternTrigger", 2, "ASYNC_TRIGGER"}, Entry{"SoftwareTrigger", 4, "ASYNC_SOFTWARE_TRIGGER"},
                    Entry{"SoftwareTriggerQueued", 7, "ASYNC_SOFTWARE_TRIGGER_QUEUED"}));
    const std::vector<Entry> inputs = entries(FG_TRIGGERINSRC);
    ASSERT_EQ(inputs.size(), 8u);
    EXPECT_EQ(inputs[0], (Entry{"Input 0", 0, "Input_0"}));
    EXPECT_EQ(inputs[7], (Entry{"Input 7", 7, "Input_7"}));
    for (const int id : {FG_TRIGGERMODE, FG_EXSYNCON, FG_FLASHON, FG_TRIGGERINSRC, FG_TRIGGERINPOLARITY,
                         FG_EXSYNCINVERT, FG_EXSYNCPOLARITY, FG_FLASH_POLARITY}) {
        EXPECT_EQ(get(id), 0) << id;
    }
    EXPECT_EQ(get(FG_FLASHTIME_SYNC), 1) << "its default comes after the flash time's";
}

TEST_F(AreaTriggerParameterTest, TheTreeHasItsGroups) {
    open();
    const std::string expected =
        "Trigger / Exsync(FG_TRIGGERMODE FG_EXSYNCON FG_FLASHON FG_LIMIT_TRIGGER_PULSES "
        "Software Trigger(FG_SENDSOFTWARETRIGGER FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL) "
        "Trigger Input(FG_TRIGGERINSRC FG_TRIGGERINPOLARITY) "
        "Exsync Output(FG_FRAMESPERSEC FG_EXPOSURE FG_EXSYNCDELAY FG_EXSYNCINVERT FG_EXSYNCPOLARITY) "
        "Flash(FG_FLASHTIME_SYNC FG_FLASHTIME FG_STROBEPULSEDELAY FG_FLASH_POLARITY) Accuracy(FG_PRESCALER))";
    for (const int port : {0, 1}) EXPECT_EQ(tree(port), expected);
    // Once complete, a write changes the nodes in place.
    for (const int port : {0, 1}) master().getHeader()->finalizeDescriptionsOnPort(port);
    load(FG_TRIGGERMODE, 7);
    EXPECT_EQ(tree(0), expected);
    const RegisterInfo* send = master().getHeader()->getRegisterInfo(0)->u.gReg.elements[4]->u.gReg.elements[0];
    EXPECT_EQ(send->u.iReg.to, 255);
    EXPECT_EQ(send->accessFlags, 6);
}

TEST_F(AreaTriggerParameterTest, SmallerDesignsPublishLess) {
    removeQueue();
    removeFlashTime();
    board.removeRegister("AATrgArea_TriggersTillStop");
    open();
    EXPECT_EQ(master().getHeader()->getParameterIdByName("FG_FLASHTIME"), 0);
    EXPECT_EQ(master().getHeader()->getParameterIdByName("FG_LIMIT_TRIGGER_PULSES"), 0);
    EXPECT_EQ(master().getHeader()->getParameterIdByName("FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL"), 0);
    EXPECT_EQ(entries(FG_TRIGGERMODE).back().value, 4);
    const Fx3Parameter& send = record(FG_SENDSOFTWARETRIGGER);
    EXPECT_EQ(send.description.parameterName, "Software trigger pulse");
    EXPECT_EQ(send.description.docDescription, "Generate a software trigger pulse.");
    EXPECT_THAT(entries(FG_SENDSOFTWARETRIGGER), ElementsAre(Entry{"Send", 1, "Send"}));
    EXPECT_EQ(send.access.rangeFlag[0], 1);
    EXPECT_EQ(tree(0),
              "Trigger / Exsync(FG_TRIGGERMODE FG_EXSYNCON FG_FLASHON Software Trigger(FG_SENDSOFTWARETRIGGER) "
              "Trigger Input(FG_TRIGGERINSRC FG_TRIGGERINPOLARITY) "
              "Exsync Output(FG_FRAMESPERSEC FG_EXPOSURE FG_EXSYNCDELAY FG_EXSYNCINVERT FG_EXSYNCPOLARITY) "
              "Flash(FG_STROBEPULSEDELAY FG_FLASH_POLARITY) Accuracy(FG_PRESCALER))");
}

TEST_F(AreaTriggerParameterTest, ATwoCameraDesignOffersTheSynchronMode) {
    makeTwoCameras();
    board.removeRegister("ABTrgArea_FlashLow");
    board.removeRegister("ABEnable_ProgFlashDuration");
    open();
    EXPECT_EQ(entries(FG_TRIGGERMODE)[2], (Entry{"GrabberControlled Synchron", 3, "GRABBER_CONTROLLED_SYNCHRON"}));
    EXPECT_EQ(entries(FG_TRIGGERMODE).size(), 6u);
    // Only port 0 has the flash time: it exists and has limits there, but no flags and no place in the tree.
    EXPECT_DOUBLE_EQ(maximum<double>(FG_FLASHTIME, 0), 10485760.0);
    EXPECT_EQ(maximum<double>(FG_FLASHTIME, 1), 0.0);
    EXPECT_EQ(access(FG_FLASHTIME), 3) << "as a fresh record";
    EXPECT_EQ(tree(0).find("FG_FLASHTIME"), std::string::npos);
}

TEST_F(AreaTriggerParameterTest, ALineCameraHasNoTriggerParameters) {
    add<PSAreaTrigger>();
    EXPECT_EQ(master().getHeader()->getParameterIdByName("FG_TRIGGERMODE"), 0);
    EXPECT_EQ(tree(0), "");
}

TEST_F(AreaTriggerParameterTest, TimesAreStoredAsTheHardwareProducesThem) {
    openInMode(1);
    struct Row {
        int id;
        double written, stored;
    };
    for (const Row& row : {
             Row{FG_FRAMESPERSEC,     30.0,   30.003000300030003},
             Row{FG_EXSYNCDELAY,      25.0,   20.0              },
             Row{FG_STROBEPULSEDELAY, 29.5,   30.0              },
             Row{FG_FLASHTIME,        1234.5, 1230.0            },
             Row{FG_PRESCALER,        11.0,   11.008            },
    }) {
        EXPECT_EQ(set(row.id, row.written), FG_OK) << row.id;
        EXPECT_DOUBLE_EQ(get<double>(row.id), row.stored) << row.id;
    }
}

TEST_F(AreaTriggerParameterTest, TheFlashFollowsTheExposureUntilItGetsATimeOfItsOwn) {
    openInMode(1);
    set(FG_PRESCALER, 0.8);
    EXPECT_EQ(set(FG_EXPOSURE, 1001), FG_OK);
    EXPECT_EQ(get(FG_EXPOSURE), 1000);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 1000.8) << "of the exposure that was asked for";
    EXPECT_THAT(board.eventsOf("write AATrgArea_FlashLow"), IsEmpty());
    EXPECT_EQ(board.writes().back(), "AATrgArea_ExSyncLow 1249");

    board.clearEvents();
    EXPECT_EQ(set(FG_FLASHTIME, 200.0), FG_OK);
    EXPECT_EQ(get(FG_FLASHTIME_SYNC), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AATrgArea_FlashLow 249"));
    set(FG_EXPOSURE, 2000);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 200.0);

    EXPECT_EQ(set(FG_FLASHTIME_SYNC, 1), FG_OK);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 2000.0);
}

TEST_F(AreaTriggerParameterTest, InvertAndPolarityAreOneFlag) {
    openInMode(1);
    EXPECT_EQ(set(FG_EXSYNCINVERT, 1), FG_OK);
    EXPECT_EQ(get(FG_EXSYNCPOLARITY), 1);
    EXPECT_EQ(set(FG_EXSYNCPOLARITY, 0), FG_OK);
    EXPECT_EQ(get(FG_EXSYNCINVERT), 0);
    load(FG_EXSYNCINVERT, 256);
    EXPECT_EQ(get(FG_EXSYNCPOLARITY), 1) << "every number but 0";
    load(FG_FLASHTIME_SYNC, 2);
    EXPECT_EQ(get(FG_FLASHTIME_SYNC), 0) << "1 alone";
}

TEST_F(AreaTriggerParameterTest, ValuesBoundEachOther) {
    openInMode(1);
    EXPECT_EQ(set(FG_EXPOSURE, 8000), FG_OK);
    EXPECT_DOUBLE_EQ(maximum<double>(FG_FRAMESPERSEC), 124.68827930174564);
    EXPECT_EQ(set(FG_FRAMESPERSEC, 100.0), FG_OK);
    EXPECT_EQ(maximum(FG_EXPOSURE), 9980);
    EXPECT_EQ(set(FG_EXPOSURE, 9981), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(set(FG_EXPOSURE, 100), FG_OK);
    EXPECT_DOUBLE_EQ(maximum<double>(FG_PRESCALER), 100.0) << "the time base ends at the exposure";
    EXPECT_EQ(set(FG_PRESCALER, 0.496), FG_OK);
    EXPECT_EQ(minimum(FG_EXPOSURE), 0);
    EXPECT_EQ(maximum(FG_EXPOSURE), 9999);
    EXPECT_EQ(set(FG_EXPOSURE, 0), FG_OK);
    EXPECT_EQ(board.writes().back(), "AATrgArea_ExSyncLow 4294967295");
    EXPECT_EQ(get(FG_EXPOSURE), 0);
}

TEST_F(AreaTriggerParameterTest, LongTimesHoldTheTimeBaseUp) {
    board.setWidth("AATrgArea_ExSyncDelay", 8);
    openInMode(1);
    EXPECT_DOUBLE_EQ(minimum<double>(FG_PRESCALER), 0.496);
    EXPECT_EQ(set(FG_EXSYNCDELAY, 2550.0), FG_OK);
    EXPECT_DOUBLE_EQ(minimum<double>(FG_PRESCALER), 10.032) << "above the present time base";
    EXPECT_EQ(set(FG_PRESCALER, 10.0), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(set(FG_EXSYNCDELAY, 0.0), FG_OK);
    EXPECT_EQ(set(FG_PRESCALER, 0.496), FG_OK);
    EXPECT_EQ(set(FG_PRESCALER, 0.495), FG_VALUE_OUT_OF_RANGE);
}

TEST_F(AreaTriggerParameterTest, SwitchesAndTriggersLeaveLimitsAndFlagsAlone) {
    openInMode(4);
    const auto isRecomputed = [&](int id, int value) {
        record(FG_EXPOSURE).access.accessFlag[0] = 0;
        load(id, value);
        return access(FG_EXPOSURE) != 0;
    };
    EXPECT_FALSE(isRecomputed(FG_EXSYNCON, 1));
    EXPECT_FALSE(isRecomputed(FG_FLASHON, 1));
    EXPECT_FALSE(isRecomputed(FG_SENDSOFTWARETRIGGER, 1));
    EXPECT_TRUE(isRecomputed(FG_TRIGGERINPOLARITY, 1));
    EXPECT_TRUE(isRecomputed(FG_TRIGGERMODE, 8)) << "even when it is refused";
    EXPECT_EQ(get(FG_SENDSOFTWARETRIGGER), 1);
}

TEST_F(AreaTriggerParameterTest, TheAccessOverrideSurvivesWrites) {
    open();
    EXPECT_EQ(set(FG_EXPOSURE, 5000), FG_NOT_WRITABLE);
    load(FG_GLOBAL_ACCESS, 7);
    board.clearEvents();
    EXPECT_EQ(set(FG_EXPOSURE, 5000), FG_OK);
    EXPECT_EQ(set(FG_FRAMESPERSEC, 20.0), FG_OK);
    EXPECT_THAT(board.writes(), IsEmpty()) << "free run writes neither";
    EXPECT_EQ(set(FG_EXSYNCDELAY, 100.0), FG_OK);
    EXPECT_THAT(board.writes(), ElementsAre("AATrgArea_ExSyncDelay 10"));
    EXPECT_EQ(access(FG_EXPOSURE), 7);
    EXPECT_EQ(set(FG_SENDSOFTWARETRIGGER, 1), FG_TRIGGER_MODE_MISMATCH);
    EXPECT_EQ(lastError(), FG_TRIGGER_MODE_MISMATCH);
}

TEST_F(AreaTriggerParameterTest, UnknownIdentifiersAreRefused) {
    PSAreaTrigger& trigger = open();
    double memory = 7.0;
    for (const int id : {FG_WIDTH, 8730, 0, -1}) {
        EXPECT_EQ(trigger.getParamFromRs(id, &memory, 0), FG_INVALID_ARGUMENT);
        EXPECT_EQ(trigger.setParamToRs(id, &memory, 0), FG_INVALID_ARGUMENT);
    }
    EXPECT_EQ(memory, 7.0);
}

}  // namespace
