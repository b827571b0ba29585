#include <cmath>
#include <limits>

#include "tests/core/GrabberTest.h"
#include "tests/core/ProbeModule.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ParameterRecordTest : public ModuleTest {
protected:
    ParameterRecordTest() : module(*new ProbeModule(&master(), "m", calls)) {
        master().getHeader()->addModule(&module, 0);
    }
    ~ParameterRecordTest() override {
        free();  // the modules note their end in a member of this class
    }
    void free() {
        Fg_FreeGrabber(&mHandle);
        mHandle.Master = nullptr;
    }
    Fx3ParameterHeader& registry() { return *master().getHeader(); }
    template <class Value>
    int check(Fx3Parameter& parameter, Value value, unsigned port = 0, FgParamTypes type = FG_PARAM_TYPE_AUTO) {
        return parameter.checkParameter(&value, port, type);
    }

    std::vector<std::string> calls;
    ProbeModule& module;
};

TEST_F(ParameterRecordTest, FreshRecordHasReadAndWriteAccessAndEmptyLimits) {
    Fx3Parameter& record = module.make(70, TYPE_INT);
    EXPECT_EQ(registry().searchParameterById(70), &record);
    EXPECT_EQ(record.head, &registry());
    EXPECT_EQ(record.mParent, &module);
    EXPECT_EQ(record.description.docDescription, "");
    for (const unsigned port : {0U, 1U}) {
        EXPECT_EQ(record.access.accessFlag[port], 3);
        EXPECT_EQ(record.access.rangeFlag[port], 0);
        EXPECT_EQ(record.access.visibilityFlag[port], 0);
        EXPECT_EQ(record.access.writeToConfigFile[port], 0);
        EXPECT_EQ(record.data.intData->to[port], 0);
        EXPECT_EQ(record.description.group[port], nullptr);
    }
    EXPECT_EQ(record.data.doubleData, nullptr);
    EXPECT_EQ(record.data.enumData, nullptr);
    EXPECT_EQ(record.setDescr("text"), 0);
    EXPECT_EQ(record.description.docDescription, "text");
}

TEST_F(ParameterRecordTest, SecondRecordUnderAnIdentifierStaysOutside) {
    Fx3Parameter& first = module.make(70, TYPE_INT, "FG_FIRST");
    const Fx3Parameter second(&module, TYPE_DOUBLE, "Second", "FG_SECOND", 70, nullptr, false);
    EXPECT_EQ(registry().searchParameterById(70), &first);
    EXPECT_EQ(registry().getParameterIdByName("FG_SECOND"), 0);
}

TEST_F(ParameterRecordTest, IntegersAreHeldAgainstLimitsAndStep) {
    Fx3Parameter& record = module.make(70, TYPE_INT);
    struct Case {
        int from, to, step, value, code;
    };
    for (const Case& c : {
             Case{0,               1024,       4,  1024,            0    },
             {0,               1024,       4,  1025,            -6000},
             {0,               1024,       4,  1022,            -7080},
             {0,               1024,       4,  -4,              -6000},
             {0,               1024,       4,  0,               0    },
             {1,               1024,       4,  5,               -7080},
             {1,               1024,       4,  8,               0    },
             {0,               1024,       0,  1023,            0    },
             {-100,            100,        3,  -99,             0    },
             {-100,            100,        3,  -98,             -7080},
             {-100,            100,        -3, 99,              0    },
             {-2147483647 - 1, 2147483647, -1, -2147483647 - 1, 0    },
             {-2147483647 - 1, 2147483647, 1,  2147483647,      0    },
             {5,               4,          0,  5,               -6000},
             {5,               4,          0,  4,               -6000}
    }) {
        SCOPED_TRACE(std::to_string(c.from) + " " + std::to_string(c.step) + " " + std::to_string(c.value));
        registry().setLimits(70, 0, c.from, c.to, c.step, 0, false);
        EXPECT_EQ(check(record, c.value), c.code);
    }
}

TEST_F(ParameterRecordTest, LimitsBelongToTheirPort) {
    Fx3Parameter& record = module.make(70, TYPE_INT);
    registry().setLimits(70, 0, 0, 10, 0, 0, false);
    registry().setLimits(70, 1, 20, 30, 0, 0, false);
    EXPECT_EQ(check(record, 5, 0), 0);
    EXPECT_EQ(check(record, 5, 1), -6000);
    EXPECT_EQ(check(record, 25, 1), 0);
}

TEST_F(ParameterRecordTest, DoublesIncludeTheirLimitsAndNothingElse) {
    Fx3Parameter& record = module.make(71, TYPE_DOUBLE);
    registry().setLimits(71, 0, -1.5, 2.5, 1.0, 0.0, false);
    for (const auto& [value, code] : {
             std::pair{-1.5, 0},
             {2.5, 0},
             {0.3, 0},
             {-0.0, 0},
             {std::nextafter(-1.5, -2.0), -6000},
             {std::nextafter(2.5, 3.0), -6000},
             {kInfinity, -6000},
             {-kInfinity, -6000},
             {kNotANumber, -6000}
    }) {
        EXPECT_EQ(check(record, value), code) << value;
    }
}

TEST_F(ParameterRecordTest, EnumerationsTakeTheirEntriesOnly) {
    Fx3Parameter& record = module.make(72, TYPE_ENUM);
    for (const int value : {0, 1, -1}) EXPECT_EQ(check(record, value), -6000);
    const EnumField entries[] = {
        {"High", 9,           "H"    },
        {"Low",  3,           nullptr},
        {"All",  4294967295U, "A"    }
    };
    registry().setLimits(72, 0, entries, 3, 9, false);
    for (const auto& [value, code] : {
             std::pair{9,  0    },
             {3,  0    },
             {-1, 0    },
             {4,  -6000},
             {0,  -6000}
    }) {
        EXPECT_EQ(check(record, value), code) << value;
        EXPECT_EQ(check(record, value, 1), -6000) << value;
    }
}

TEST_F(ParameterRecordTest, TagsMustFitTheType) {
    registry().setLimits(module.make(70, TYPE_INT).description.id, 0, 0, 10, 0, 0, false);
    registry().setLimits(module.make(71, TYPE_DOUBLE).description.id, 0, 0.0, 10.0, 0.0, 0.0, false);
    const EnumField entries[] = {
        {"Zero", 0, nullptr}
    };
    registry().setLimits(module.make(72, TYPE_ENUM).description.id, 0, entries, 1, 0, false);
    Fx3Parameter& text = module.make(73, TYPE_STRING);
    for (const int tag : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 4096, 4098, 4101, 8192, -2, 2147483647}) {
        SCOPED_TRACE(tag);
        const auto type = static_cast<FgParamTypes>(tag);
        const bool isInteger = tag == -1 || (tag >= 1 && tag <= 4);
        const bool isDouble = tag == -1 || tag == 5;
        EXPECT_EQ(check(record(70), int64_t{0}, 0, type), isInteger ? 0 : -2070);
        EXPECT_EQ(check(record(72), int64_t{0}, 0, type), isInteger ? 0 : -2070);
        EXPECT_EQ(check(record(71), 1.0, 0, type), isDouble ? 0 : -2070);
        EXPECT_EQ(text.checkParameter("any", 0, type), 0);
    }
    // The low 32 bits of a longer integer are looked at, as a signed number.
    EXPECT_EQ(check(record(70), uint64_t{0xFFFFFFFF00000005}, 0, FG_PARAM_TYPE_UINT64_T), 0);
    EXPECT_EQ(check(record(70), uint64_t{0x00000000FFFFFFFF}, 0, FG_PARAM_TYPE_UINT64_T), -6000);
}

TEST_F(ParameterRecordTest, AccessAndAcquisitionComeBeforeTagAndLimits) {
    Fx3Parameter& record = module.make(70, TYPE_INT);
    struct Case {
        int access;
        bool running;
        int code;
    };
    for (const Case& c : {
             Case{0, false, -8010},
             {1, false, -8010},
             {1, true,  -8010},
             {4, true,  -8010},
             {5, true,  -8010},
             {3, false, -2070},
             {3, true,  -7090},
             {7, true,  -2070},
             {2, true,  -7090}
    }) {
        SCOPED_TRACE(std::to_string(c.access) + (c.running ? " running" : ""));
        record.access.accessFlag[0] = c.access;
        master().getImageControl()->setImageDMATransferActive(0, c.running);
        EXPECT_EQ(check(record, 99, 0, FG_PARAM_TYPE_DOUBLE), c.code);
    }
    EXPECT_EQ(check(record, 99, 1), -6000);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(ParameterRecordTest, ModulesCheckTheirOwnStructures) {
    Fx3Parameter& record = module.make(74, TYPE_OTHER);
    module.checkResult = -1234;
    EXPECT_EQ(check(record, 0, 1, FG_PARAM_TYPE_COMPLEX_DATATYPE), -1234);
    EXPECT_THAT(calls, ElementsAre("m: check 74 port=1"));
    EXPECT_EQ(module.RSMaster::checkParam(74, nullptr, 0), -1);
}

TEST_F(ParameterRecordTest, UnknownTypesAndPortsAreRefused) {
    Fx3Parameter& record = module.make(75, static_cast<FX3ParamType>(6));
    EXPECT_EQ(check(record, 0), -2031);
    int value = 3;
    EXPECT_EQ(registry().getParameterById(75, &value, 0), -2031);
    EXPECT_EQ(registry().getParameterById(static_cast<int>(75 | FG_SELECT_MINIMUM), &value, 0), -2130);
    Fx3Parameter& known = module.make(70, TYPE_INT);
    for (const unsigned port : {2U, 7U, 2147483647U, 4294967295U}) EXPECT_EQ(check(known, 0, port), -61) << port;
    EXPECT_EQ(value, 3);
}

TEST_F(ParameterRecordTest, DirectRegistersGuardTheirDirection) {
    struct Case {
        int id, handle, direction, code;
    };
    for (const Case& c : {
             Case{50001, 5, 1, 0    },
             {50002, 5, 2, -8010},
             {50003, 5, 0, -8010},
             {50004, 0, 1, -2031},
             {50005, 0, 2, -2031}
    }) {
        SCOPED_TRACE(c.id);
        auto& record = *new Fx3ParameterDirectReg(&module, "AAReset", "AAReset", c.id, c.handle, c.direction, 1);
        const int value = 1;
        EXPECT_EQ(record.setToRegister(0, &value), c.code);
        EXPECT_EQ(record.checkParameter(&value, 0, FG_PARAM_TYPE_DOUBLE), 0);
        EXPECT_EQ(record.data.directData->regPtr, c.handle);
        EXPECT_EQ(record.data.directData->bitRange, 1);
        EXPECT_EQ(record.data.directData->regValue, 0U);
        EXPECT_STREQ(record.data.directData->regName, "AAReset");
        EXPECT_EQ(record.access.writeToConfigFile[0], 0);
        EXPECT_FALSE(record.description.unit.has_value());
    }
    EXPECT_THAT(calls, ElementsAre("m: set 50001 port=0"));
}

}  // namespace
