// A grabber that comes to the state of another one through a configuration file.
#include <map>

#include "tests/TemporaryFolder.h"
#include "tests/core/DecimalCommaLocale.h"
#include "tests/core/GrabberTest.h"

namespace {

/// Whether the process has a locale with a decimal comma while it saves and while it loads.
struct Locales {
    bool commaSaves, commaLoads;
};

class ConfigRoundTripTest : public GrabberTest, public testing::WithParamInterface<Locales> {
protected:
    /// Values on the grid of the default time base, in an order in which the limits let them pass.
    void changeMany() {
        // clang-format off
        const std::pair<int, int> integers[] = {
            {FG_WIDTH, 512}, {FG_HEIGHT, 300}, {FG_XOFFSET, 64}, {FG_YOFFSET, 5}, {FG_TIMEOUT, 12},
            {FG_TRIGGERMODE, 1}, {FG_EXPOSURE, 2000}, {FG_EXSYNCON, 1}, {FG_EXSYNCPOLARITY, 1},
            {FG_FLASHTIME_SYNC, 0}, {FG_FLASHON, 1}, {FG_FLASH_POLARITY, 1}, {FG_KNEE_LUT_INVERT, 1}, {FG_CCSEL0, 5},
            {FG_CCSEL1, 4}, {FG_CCSEL2, 0}, {FG_DIGIO_OUTPUT, 1}, {FG_IMG_SELECT_PERIOD, 7}, {FG_IMG_SELECT, 4},
            {FG_GEN_ENABLE, 1}, {FG_GEN_ROLL, 1}, {FG_SENSORREADOUT, 31}, {FG_LIMIT_TRIGGER_PULSES, 9},
        };
        // clang-format on
        for (const auto& [id, value] : integers) {
            EXPECT_EQ(set(id, value), 0) << id;
            EXPECT_EQ(get(id), value) << id;
        }
        const std::pair<int, double> doubles[] = {
            {FG_FRAMESPERSEC,     50.0 },
            {FG_EXSYNCDELAY,      40.0 },
            {FG_STROBEPULSEDELAY, 80.0 },
            {FG_FLASHTIME,        400.0},
            {FG_KNEE_LUT_SCALE,   1.25 },
            {FG_KNEE_LUT_OFFSET,  0.125},
            {FG_KNEE_LUT_GAMMA,   0.5  },
        };
        for (const auto& [id, value] : doubles) EXPECT_EQ(set(id, value), 0) << id;
        std::vector<double> curve(1025, 0.75);
        KneeLookupTable_s table{};
        table.value = curve.data();
        table.nrOfElements = 1025;
        EXPECT_EQ(load(FG_KNEE_LUT, table), 0);
    }
    std::map<std::string, uint64_t> registerValues() {
        std::map<std::string, uint64_t> values;
        for (const FakeBoard::Register& reg : board.registers) values[reg.name] = reg.value;
        return values;
    }
    /// \return what every parameter of a plain type answers, as bytes, by name and port
    std::map<std::string, std::string> answers() {
        std::map<std::string, std::string> values;
        for (int i = 0; i < Fg_getNrOfParameter(handle()); ++i) {
            const int id = Fg_getParameterId(handle(), i);
            if (record(id).data.type == TYPE_OTHER) continue;
            for (const int port : {0, 1}) {
                std::string value(1024, '\0');
                const int code = Fg_getParameterWithType(handle(), id, value.data(), port, FG_PARAM_TYPE_AUTO);
                value.resize(value.find_last_not_of('\0') + 1);
                values[std::string(Fg_getParameterName(handle(), i)) + " " + std::to_string(port)] =
                    std::to_string(code) + ": " + testing::PrintToString(value);
            }
        }
        return values;
    }
    int withLocale(bool comma, const std::function<int()>& action) {
        if (!comma) return action();
        const DecimalCommaLocale locale;
        EXPECT_TRUE(locale.isActive());
        return action();
    }

    TemporaryFolder files;
};

INSTANTIATE_TEST_SUITE_P(Locales, ConfigRoundTripTest,
                         testing::Values(Locales{false, false}, Locales{true, false}, Locales{false, true}),
                         [](const auto& each) {
                             return std::string(each.param.commaSaves ? "Comma" : "Stop") +
                                    (each.param.commaLoads ? "ToComma" : "ToStop");
                         });

TEST_P(ConfigRoundTripTest, NewGrabberHasEveryValueAndEveryRegisterOfTheFile) {
    ASSERT_EQ(open(), 0);
    const auto defaultAnswers = answers();
    changeMany();
    const std::string path = files.file("state.mcf");
    ASSERT_EQ(withLocale(GetParam().commaSaves, [&] { return Fg_saveConfig(handle(), path.c_str()); }), 0);
    const auto changedAnswers = answers();
    const auto changedRegisters = registerValues();
    int changes = 0;
    for (const auto& [name, value] : changedAnswers) changes += value != defaultAnswers.at(name) ? 1 : 0;
    EXPECT_GE(changes, 30) << "the test changes too little";
    free();
    for (FakeBoard::Register& reg : board.registers) reg.value = 0;

    ASSERT_EQ(open(), 0);
    EXPECT_NE(registerValues(), changedRegisters);
    ASSERT_EQ(withLocale(GetParam().commaLoads, [&] { return Fg_loadConfig(handle(), path.c_str()); }), 0);
    const auto loadedAnswers = answers();
    for (const auto& [name, value] : changedAnswers) EXPECT_EQ(loadedAnswers.at(name), value) << name;
    const auto loadedRegisters = registerValues();
    for (const auto& [name, value] : changedRegisters) EXPECT_EQ(loadedRegisters.at(name), value) << name;
    ASSERT_EQ(Fg_saveConfig(handle(), files.file("again.mcf").c_str()), 0);
    EXPECT_EQ(files.content("again.mcf"), files.content("state.mcf"));
    EXPECT_NE(files.content("state.mcf").find("FG_EXPOSURE=2000;\n"), std::string::npos);
    EXPECT_NE(files.content("state.mcf").find("FG_KNEE_LUT_SCALE=1.25;\n"), std::string::npos);
    EXPECT_NE(files.content("state.mcf").find("FG_KNEE_LUT0=0.750000000000, 0.75"), std::string::npos);
}

}  // namespace
