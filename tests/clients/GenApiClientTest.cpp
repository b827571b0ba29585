// The description of the staged applet in the hands of a GenICam client that is not ours: what the client finds and
// reads through the description is held against direct calls of the exported functions.
#include "tests/clients/GenApiClientTest.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace {

using testing::ElementsAreArray;

INSTANTIATE_TEST_SUITE_P(Ports, GenApiClientTest, testing::Values(0, 1));

TEST_P(GenApiClientTest, EveryFeatureIsFound) {
    EXPECT_EQ(categories.size(), 17U);
    EXPECT_EQ(features.size(), 65U);
    std::vector<std::string> expected;
    for (const auto& [name, info] : describable()) {
        expected.push_back(name);
        ArvGcNode* const found = node(name);
        const bool isOfItsKind = info->format == REG_FORMAT_ENUM     ? ARV_IS_GC_ENUMERATION(found)
                                 : info->format == REG_FORMAT_DOUBLE ? ARV_IS_GC_FLOAT_NODE(found)
                                                                     : ARV_IS_GC_INTEGER_NODE(found);
        EXPECT_TRUE(isOfItsKind) << name;
        EXPECT_EQ(idOf(name), info->id) << name;
    }
    std::vector<std::string> found = features;
    std::sort(found.begin(), found.end());
    EXPECT_THAT(found, ElementsAreArray(expected));
    EXPECT_EQ(node("FG_KNEE_LUT_FILE"), nullptr) << "texts are not described";
}

TEST_P(GenApiClientTest, NumbersAndTheirLimitsAreThoseOfDirectCalls) {
    ClientError error;
    int numbers = 0;
    for (const auto& [name, info] : describable()) {
        SCOPED_TRACE(name);
        const bool isReadable = (direct(info->id, FG_SELECT_ACCESS) & 1) != 0;
        if (info->format == REG_FORMAT_INT || info->format == REG_FORMAT_UINT) {
            auto* const integer = ARV_GC_INTEGER(node(name));
            if (isReadable) {
                EXPECT_EQ(arv_gc_integer_get_value(integer, error.place()), direct(info->id));
            }
            EXPECT_EQ(arv_gc_integer_get_min(integer, error.place()), direct(info->id, FG_SELECT_MINIMUM));
            EXPECT_EQ(arv_gc_integer_get_max(integer, error.place()), direct(info->id, FG_SELECT_MAXIMUM));
            EXPECT_EQ(arv_gc_integer_get_inc(integer, error.place()), info->u.iReg.steps);
        } else if (info->format == REG_FORMAT_DOUBLE) {
            auto* const number = ARV_GC_FLOAT(node(name));
            if (isReadable) {
                const double tolerance = isMeasured(info->id) ? 1.0 : 0.0;
                EXPECT_NEAR(arv_gc_float_get_value(number, error.place()), direct<double>(info->id), tolerance);
            }
            EXPECT_EQ(arv_gc_float_get_min(number, error.place()), direct<double>(info->id, FG_SELECT_MINIMUM));
            EXPECT_EQ(arv_gc_float_get_max(number, error.place()), direct<double>(info->id, FG_SELECT_MAXIMUM));
        } else {
            continue;
        }
        EXPECT_EQ(error.text(), "");
        ++numbers;
    }
    EXPECT_GT(numbers, 30);
    EXPECT_EQ(arv_gc_integer_get_inc(ARV_GC_INTEGER(node("FG_WIDTH")), error.place()), 16);
    EXPECT_EQ(arv_gc_integer_get_max(ARV_GC_INTEGER(node("FG_TIMEOUT")), error.place()), 2147483646);
}

TEST_P(GenApiClientTest, EntriesAreThoseOfTheTree) {
    ClientError error;
    int enumerations = 0;
    for (const auto& [name, info] : describable()) {
        if (info->format != REG_FORMAT_ENUM) continue;
        SCOPED_TRACE(name);
        ++enumerations;
        auto* const enumeration = ARV_GC_ENUMERATION(node(name));
        std::map<gint64, std::string> expected;
        const EnumReg& entries = info->u.eReg;
        for (int i = 0; i < entries.nrOfElements; ++i) {
            if (entries.enumDefName[i] != nullptr) expected[entries.enumValues[i]] = entries.enumDefName[i];
        }
        std::map<gint64, std::string> found;
        for (const GSList* item = arv_gc_enumeration_get_entries(enumeration); item != nullptr; item = item->next) {
            auto* const entry = ARV_GC_ENUM_ENTRY(item->data);
            found[arv_gc_enum_entry_get_value(entry, error.place())] =
                arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(entry));
        }
        EXPECT_EQ(found, expected);
        if ((direct(info->id, FG_SELECT_ACCESS) & 1) == 0) continue;
        const int value = direct(info->id);
        EXPECT_EQ(arv_gc_enumeration_get_int_value(enumeration, error.place()), value);
        if (expected.contains(value)) {
            EXPECT_EQ(std::string(arv_gc_enumeration_get_string_value(enumeration, error.place())), expected[value]);
        }
        EXPECT_EQ(error.text(), "");
    }
    EXPECT_GT(enumerations, 15);
}

TEST_P(GenApiClientTest, LocksFollowTheAccessAndLockedFeaturesRefuse) {
    int locked = 0;
    for (const auto& [name, info] : describable()) {
        SCOPED_TRACE(name);
        const bool isWritable = (direct(info->id, FG_SELECT_ACCESS) & 2) != 0;
        EXPECT_EQ(isLocked(name), !isWritable);
        if (isWritable) continue;
        ++locked;
        EXPECT_NE(write(name, legalValue(*info)), "");
    }
    // This client shows the lock and leaves the refusal to the applet; on port 1 a medium camera is refused first.
    const std::string code = GetParam() == 0 ? " -8010" : " -61";
    EXPECT_EQ(port.writes.size(), static_cast<size_t>(locked));
    EXPECT_THAT(port.writes, testing::Each(testing::EndsWith(code)));
    EXPECT_GT(locked, 15);
    EXPECT_LT(locked, 60);
}

TEST_P(GenApiClientTest, LocksFollowTheTriggerMode) {
    const struct {
        int mode;
        bool exposure, framesPerSecond, inputSource;
    } modes[] = {
        {1, false, false, true },
        {2, false, true,  false},
        {4, false, true,  true },
        {0, true,  true,  true }
    };
    if (GetParam() == 1) {  // no trigger mode is taken there, so nothing unlocks
        EXPECT_THAT(write("FG_TRIGGERMODE", 1), testing::HasSubstr("-61"));
        EXPECT_TRUE(isLocked("FG_EXPOSURE"));
        return;
    }
    for (const auto& [mode, exposure, framesPerSecond, inputSource] : modes) {
        SCOPED_TRACE(mode);
        EXPECT_EQ(write("FG_TRIGGERMODE", mode), "");
        EXPECT_EQ(isLocked("FG_EXPOSURE"), exposure);
        EXPECT_EQ(isLocked("FG_FRAMESPERSEC"), framesPerSecond);
        EXPECT_EQ(isLocked("FG_TRIGGERINSRC"), inputSource);
    }
}

TEST_P(GenApiClientTest, ADocumentThatNamesAnotherRegisterIsNoticed) {
    std::string changed = document;
    const std::string address = "<Address>100</Address>";
    changed.replace(changed.find(address), address.size(), "<Address>9999</Address>");
    const ObjectOwner<ArvGc> other(arv_gc_new(clientDevice.get(), changed.data(), changed.size()));
    ClientError error;
    arv_gc_integer_get_value(ARV_GC_INTEGER(arv_gc_get_node(other.get(), "FG_WIDTH")), error.place());
    EXPECT_THAT(error.text(), testing::HasSubstr("-2070")) << "the code of an unknown parameter";
}

TEST_P(GenApiClientTest, XmllintFindsTheDocumentWellFormed) {
    Installation folder;
    const auto outcome = [&](const std::string& text) {
        const std::filesystem::path path = folder.root() / "document.xml";
        std::ofstream(path, std::ios::binary) << text;
        // NOLINTNEXTLINE(cert-env33-c): the command is the test's own
        return std::system((std::string(QUILLON_XMLLINT " --noout '") + path.string() + "' 2>/dev/null").c_str());
    };
    EXPECT_EQ(outcome(document), 0);
    EXPECT_NE(outcome(document.substr(0, document.size() - 5)), 0);
    EXPECT_NE(outcome(""), 0);
}

}  // namespace
