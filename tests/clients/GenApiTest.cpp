// The description of the staged applet in the hands of a GenICam client that is not ours: what the client finds, reads
// and writes through the description is held against direct calls of the exported functions.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"
#include "tests/clients/AppletDevice.h"

namespace {

/// The error that a call of the client may leave.
class ClientError {
public:
    ClientError() = default;
    ClientError(const ClientError&) = delete;
    ClientError& operator=(const ClientError&) = delete;
    ~ClientError() { g_clear_error(&mError); }
    GError** place() {
        g_clear_error(&mError);
        return &mError;
    }
    /// \return its text, empty without an error
    [[nodiscard]] std::string text() const { return mError == nullptr ? "" : mError->message; }

private:
    GError* mError = nullptr;
};

/// Whether each read measures anew.
bool isMeasured(int id) { return id == FG_PLX_CLK || id == FG_MEASURED_PCIE_CLK; }

/// The tests run for both ports.
class GenApiClientTest : public testing::TestWithParam<int> {
protected:
    GenApiClientTest() {
        open(device(), grabber);
        const auto describe = function<decltype(Fg_getParameterInfoXML)>("Fg_getParameterInfoXML");
        size_t size = 0;
        EXPECT_EQ(describe(&grabber, GetParam(), nullptr, &size), 0);
        std::vector<char> text(size);
        EXPECT_EQ(describe(&grabber, GetParam(), text.data(), &size), 0);
        document.assign(text.data());
        clientDevice = makeDevice(port);
        client.reset(arv_gc_new(clientDevice.get(), document.data(), document.size()));
        arv_gc_set_range_check_policy(client.get(), ARV_RANGE_CHECK_POLICY_ENABLE);
        arv_gc_set_access_check_policy(client.get(), ARV_ACCESS_CHECK_POLICY_ENABLE);
        for (const std::string& category : featuresOf("AppletParameters")) {
            for (const std::string& feature : featuresOf(category)) features.push_back(feature);
        }
    }
    ~GenApiClientTest() override {
        client.reset();
        clientDevice.reset();
        mFunctions.Fg_FreeGrabber(&grabber);
    }

    template <class Function>
    Function* function(const char* name) {
        return mApplet.function<Function>(name);
    }
    void open(FgDevice* board, Fg_Struct& opened) {
        // Whether a board is busy with a trigger shall not depend on how fast the machine is.
        ::setenv("TAVO_SIM_MODE", "fast", 1);
        int err = -1;
        opened.Master = mFunctions.Std_entry(board, &err, 0);
        EXPECT_EQ(err, 0);
    }
    /// Reads without the client.
    template <class Value = int>
    Value direct(int id, unsigned selector = 0) {
        Value value{};
        const auto type = sizeof(Value) == sizeof(double) ? FG_PARAM_TYPE_DOUBLE : FG_PARAM_TYPE_INT32_T;
        const auto address = static_cast<int>(static_cast<unsigned>(id) | selector);
        EXPECT_EQ(port.read(&grabber, address, &value, GetParam(), type), 0) << id;
        return value;
    }

    ArvGcNode* node(const std::string& name) { return arv_gc_get_node(client.get(), name.c_str()); }
    std::vector<std::string> featuresOf(const std::string& category) {
        std::vector<std::string> names;
        const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(node(category)));
        for (; item != nullptr; item = item->next) names.emplace_back(static_cast<const char*>(item->data));
        return names;
    }
    bool isLocked(const std::string& name) {
        ClientError error;
        const gboolean locked = arv_gc_feature_node_is_locked(ARV_GC_FEATURE_NODE(node(name)), error.place());
        EXPECT_EQ(error.text(), "") << name;
        return locked != FALSE;
    }
    /// Writes through the client. \return the text of the error, empty without one
    std::string write(const std::string& name, double value) {
        ClientError error;
        ArvGcNode* const target = node(name);
        if (ARV_IS_GC_ENUMERATION(target)) {
            arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(target), static_cast<gint64>(value), error.place());
        } else if (ARV_IS_GC_FLOAT(target) && !ARV_IS_GC_INTEGER(target)) {
            arv_gc_float_set_value(ARV_GC_FLOAT(target), value, error.place());
        } else {
            arv_gc_integer_set_value(ARV_GC_INTEGER(target), static_cast<gint64>(value), error.place());
        }
        return error.text();
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
    /// \return the nodes of the parameter information tree that a description can hold, by name
    std::map<std::string, const RegisterInfo*> describable() {
        std::map<std::string, const RegisterInfo*> nodes;
        const RegisterInfo* group =
            function<decltype(Fg_getParameterInfo)>("Fg_getParameterInfo")(&grabber, GetParam());
        for (; group != nullptr; group = group->next) collect(*group, nodes);
        return nodes;
    }

    const Variable mDirect{"TAVO_ENABLE_DRA", nullptr};
    const Library mApplet{kStagedApplet};
    const AppletFunctions mFunctions{mApplet};
    Fg_Struct grabber{};
    ParameterPort port{&grabber, GetParam(), function<decltype(Fg_getParameterWithType)>("Fg_getParameterWithType"),
                       function<decltype(Fg_setParameterWithType)>("Fg_setParameterWithType")};
    std::string document;
    ObjectOwner<ArvDevice> clientDevice;
    ObjectOwner<ArvGc> client;
    std::vector<std::string> features;

private:
    static void collect(const RegisterInfo& group, std::map<std::string, const RegisterInfo*>& nodes) {
        for (int i = 0; i < group.u.gReg.nrOfElements; ++i) {
            const RegisterInfo& child = *group.u.gReg.elements[i];
            const bool isNumber = child.format == REG_FORMAT_INT || child.format == REG_FORMAT_UINT ||
                                  child.format == REG_FORMAT_DOUBLE || child.format == REG_FORMAT_ENUM;
            if (child.format == REG_FORMAT_GROUP) collect(child, nodes);
            if (isNumber && child.visibilityFlags != 0) nodes[child.parameterName] = &child;
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Ports, GenApiClientTest, testing::Values(0, 1));

TEST_P(GenApiClientTest, EveryFeatureIsFound) {
    EXPECT_EQ(featuresOf("AppletParameters").size(), 17U);
    EXPECT_EQ(features.size(), 65U);
    const auto idOf = function<decltype(Fg_getParameterIdByName)>("Fg_getParameterIdByName");
    std::vector<std::string> expected;
    for (const auto& [name, info] : describable()) {
        expected.push_back(name);
        ArvGcNode* const found = node(name);
        const bool isOfItsKind = info->format == REG_FORMAT_ENUM     ? ARV_IS_GC_ENUMERATION(found)
                                 : info->format == REG_FORMAT_DOUBLE ? ARV_IS_GC_FLOAT_NODE(found)
                                                                     : ARV_IS_GC_INTEGER_NODE(found);
        EXPECT_TRUE(isOfItsKind) << name;
        EXPECT_EQ(idOf(&grabber, name.c_str()), info->id) << name;
    }
    std::vector<std::string> found = features;
    std::sort(found.begin(), found.end());
    EXPECT_THAT(found, testing::ElementsAreArray(expected));
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

TEST_P(GenApiClientTest, LocksFollowTheAccessInEachTriggerModeAndLockedFeaturesRefuse) {
    // On port 1 no trigger mode is taken: a medium camera occupies both connectors.
    const std::map<int, size_t> lockedInMode =
        GetParam() == 0 ? std::map<int, size_t>{{1, 17}, {2, 16}, {4, 17}, {0, 28}} : std::map<int, size_t>{{4, 28}};
    for (const auto& [mode, locked] : lockedInMode) {
        SCOPED_TRACE(mode);
        const std::string error = write("FG_TRIGGERMODE", mode);
        EXPECT_TRUE(GetParam() == 0 ? error.empty() : error.ends_with("-61")) << error;
        port.writes.clear();
        for (const auto& [name, info] : describable()) {
            SCOPED_TRACE(name);
            const bool isWritable = (direct(info->id, FG_SELECT_ACCESS) & 2) != 0;
            EXPECT_EQ(isLocked(name), !isWritable);
            if (!isWritable) {
                EXPECT_NE(write(name, valuesFor(*info).back()), "");
            }
        }
        // This client shows the lock and leaves the refusal to the applet.
        EXPECT_THAT(port.writes, testing::Each(testing::EndsWith(GetParam() == 0 ? " -8010" : " -61")));
        EXPECT_EQ(port.writes.size(), locked);
    }
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
}

/// A second grabber on a board of its own takes the same values by direct calls.
class GenApiTwinTest : public GenApiClientTest {
protected:
    GenApiTwinTest() { open(mBoard, twin); }
    ~GenApiTwinTest() override {
        mFunctions.Fg_FreeGrabber(&twin);
        mBoardLibrary.function<decltype(tavo_sim_close)>("tavo_sim_close")(mBoard);
    }
    /// Writes by direct call to the twin. \return the code, as text, empty for 0
    std::string writeTwin(const RegisterInfo& info, double value) {
        auto number = static_cast<int>(info.format == REG_FORMAT_DOUBLE ? 0 : value);
        const int code = info.format == REG_FORMAT_DOUBLE
                             ? port.write(&twin, info.id, &value, GetParam(), FG_PARAM_TYPE_DOUBLE)
                             : port.write(&twin, info.id, &number, GetParam(), FG_PARAM_TYPE_INT32_T);
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
    ASSERT_THAT(differences(describable()), testing::IsEmpty());
    for (const int mode : {0, 1, 2, 4}) {
        SCOPED_TRACE(mode);
        const auto infos = describable();
        const std::string code = writeTwin(*infos.at("FG_TRIGGERMODE"), mode);
        EXPECT_EQ(write("FG_TRIGGERMODE", mode).empty(), code.empty());
        writeAll(infos);
        EXPECT_THAT(differences(describable()), testing::IsEmpty());
    }
    if (GetParam() == 0) {
        EXPECT_GT(mAccepted, 200);
    } else {
        EXPECT_EQ(mAccepted, 0) << "a medium camera occupies both connectors";
    }
}

TEST_P(GenApiTwinTest, ValuesArriveAndRefusalsComeBack) {
    if (GetParam() == 1) return;  // where a medium camera keeps all locked
    EXPECT_EQ(write("FG_WIDTH", 512), "");
    EXPECT_EQ(write("FG_KNEE_LUT_GAMMA", 2.5), "");
    EXPECT_EQ(direct<double>(12103), 2.5);
    EXPECT_THAT(port.writes, testing::ElementsAre("100 0", "12103 0"));
    EXPECT_THAT(differences(describable()), testing::Contains("FG_WIDTH"));
    EXPECT_NE(write("FG_WIDTH", 513), "") << "off the step";
    EXPECT_NE(write("FG_WIDTH", 1 << 30), "") << "above the maximum";
    EXPECT_EQ(direct(100), 512);
}

}  // namespace
