#include <cmath>
#include <limits>

#include "tests/core/GrabberTest.h"
#include "tests/core/ProbeModule.h"

namespace {

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
        EXPECT_EQ(record.checkParameter(nullptr, 0, FG_PARAM_TYPE_AUTO), c.code) << "no value";
    }
    EXPECT_EQ(check(record, 99, 1), -6000);
    EXPECT_THAT(calls, IsEmpty());
}

}  // namespace
