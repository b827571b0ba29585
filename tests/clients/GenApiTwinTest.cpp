// Values that the client writes through the description, held against the same values by direct calls.
#include <algorithm>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/clients/GenApiClientTest.h"

namespace {

using testing::IsEmpty;

/// A second grabber on a board of its own takes the same values by direct calls.
class GenApiTwinTest : public GenApiClientTest {
protected:
    GenApiTwinTest() { open(mBoard, twin); }
    ~GenApiTwinTest() override {
        mFunctions.Fg_FreeGrabber(&twin);
        mBoardLibrary.function<decltype(tavo_sim_close)>("tavo_sim_close")(mBoard);
    }
    /// \return values to try: limits and another of a number, all entries of an enumeration; the lowest at last, which
    ///         switches off what it switched on
    std::vector<double> valuesFor(const RegisterInfo& info) {
        std::vector<double> values;
        if (info.format == REG_FORMAT_ENUM) {
            for (int i = info.u.eReg.nrOfElements; i > 0; --i) values.push_back(info.u.eReg.enumValues[i - 1]);
        } else if (info.format == REG_FORMAT_DOUBLE) {
            const auto from = direct<double>(info.id, FG_SELECT_MINIMUM);
            const auto to = direct<double>(info.id, FG_SELECT_MAXIMUM);
            values = {to, from + (to - from) / 2, from};
        } else {
            const int from = direct(info.id, FG_SELECT_MINIMUM);
            const int to = direct(info.id, FG_SELECT_MAXIMUM);
            const double next = std::min<double>(to, static_cast<double>(from) + info.u.iReg.steps);
            values = {static_cast<double>(to), next, static_cast<double>(from)};
        }
        return values;
    }
    /// Writes by direct call to the twin. \return the code, as text, empty for 0
    std::string writeTwin(const RegisterInfo& info, double value) {
        const auto number = static_cast<int>(info.format == REG_FORMAT_DOUBLE ? 0 : value);
        const int code = info.format == REG_FORMAT_DOUBLE
                             ? port.write(&twin, info.id, &value, GetParam(), FG_PARAM_TYPE_DOUBLE)
                             : port.write(&twin, info.id, const_cast<int*>(&number), GetParam(), FG_PARAM_TYPE_INT32_T);
        return code == 0 ? "" : std::to_string(code);
    }
    /// Writes all values of all unlocked features to both grabbers.
    void writeAll(const std::map<std::string, const RegisterInfo*>& infos) {
        for (const auto& [name, info] : infos) {
            if (name == "FG_TRIGGERMODE" || isLocked(name)) continue;
            for (const double value : valuesFor(*info)) {
                const std::string code = writeTwin(*info, value);
                const std::string error = write(name, value);
                ASSERT_TRUE(code.empty() ? error.empty() : error.find(code) != std::string::npos)
                    << name << "=" << value << ": " << error << " instead of " << code;
                mAccepted += code.empty() ? 1 : 0;
            }
        }
    }
    /// \return the readable features in which the two grabbers differ
    std::vector<std::string> differences(const std::map<std::string, const RegisterInfo*>& infos) {
        std::vector<std::string> names;
        for (const auto& [name, info] : infos) {
            if (isMeasured(info->id)) continue;
            uint64_t first = 0;
            uint64_t second = 0;
            const auto type = info->format == REG_FORMAT_DOUBLE ? FG_PARAM_TYPE_DOUBLE : FG_PARAM_TYPE_INT32_T;
            const int code = port.read(&grabber, info->id, &first, GetParam(), type);
            if (code != port.read(&twin, info->id, &second, GetParam(), type) || first != second) names.push_back(name);
        }
        return names;
    }

    const Library mBoardLibrary{kStage / "lib" / "libtavo_hw.so"};
    FgDevice* mBoard = mBoardLibrary.function<decltype(tavo_sim_open)>("tavo_sim_open")(1);
    Fg_Struct twin{};
    int mAccepted = 0;
};

INSTANTIATE_TEST_SUITE_P(Ports, GenApiTwinTest, testing::Values(0, 1));

TEST_P(GenApiTwinTest, WritesThroughTheClientDoWhatDirectCallsDo) {
    ASSERT_THAT(differences(describable()), IsEmpty());
    for (const int mode : {0, 1, 2, 4}) {
        SCOPED_TRACE(mode);
        const auto infos = describable();
        const std::string code = writeTwin(*infos.at("FG_TRIGGERMODE"), mode);
        EXPECT_EQ(write("FG_TRIGGERMODE", mode).empty(), code.empty());
        writeAll(infos);
        EXPECT_THAT(differences(describable()), IsEmpty());
    }
    if (GetParam() == 0) {
        EXPECT_GT(mAccepted, 200);
    } else {
        EXPECT_EQ(mAccepted, 0) << "a medium camera occupies both connectors";
    }
}

TEST_P(GenApiTwinTest, ValuesArriveAndRefusalsComeBack) {
    if (GetParam() == 1) {  // a medium camera occupies both connectors
        EXPECT_THAT(write("FG_WIDTH", 512), testing::HasSubstr("-61"));
        EXPECT_THAT(port.writes, testing::ElementsAre("100 -61"));
        return;
    }
    EXPECT_EQ(write("FG_TIMEOUT", 12), "");
    EXPECT_EQ(direct(600), 12);
    EXPECT_EQ(write("FG_WIDTH", 512), "");
    EXPECT_EQ(direct(100), 512);
    EXPECT_EQ(write("FG_KNEE_LUT_GAMMA", 2.5), "");
    EXPECT_EQ(direct<double>(12103), 2.5);
    EXPECT_THAT(port.writes, testing::ElementsAre("600 0", "100 0", "12103 0"));
    EXPECT_THAT(differences(describable()), testing::Contains("FG_WIDTH"));

    EXPECT_NE(write("FG_WIDTH", 513), "") << "off the step";
    EXPECT_NE(write("FG_WIDTH", 1 << 30), "") << "above the maximum";
    EXPECT_EQ(direct(100), 512);
    ClientError error;
    EXPECT_FALSE(arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(node("FG_TRIGGERMODE")), "FG_NO_SUCH_MODE",
                                                     error.place()));
}

}  // namespace
