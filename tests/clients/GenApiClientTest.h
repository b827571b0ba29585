#pragma once

#include <cstdlib>
#include <map>

#include "tests/applet/AppletLibrary.h"
#include "tests/clients/AppletDevice.h"

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

inline int selected(int id, unsigned selector) { return static_cast<int>(static_cast<unsigned>(id) | selector); }

/// Whether each read measures anew.
inline bool isMeasured(int id) { return id == FG_PLX_CLK || id == FG_MEASURED_PCIE_CLK; }

/// The tests run for both ports.
class GenApiClientTest : public testing::TestWithParam<int> {
protected:
    GenApiClientTest() {
        open(device(), grabber);
        std::vector<char> text(textSize());
        size_t size = text.size();
        EXPECT_EQ(function<decltype(Fg_getParameterInfoXML)>("Fg_getParameterInfoXML")(&grabber, GetParam(),
                                                                                       text.data(), &size),
                  0);
        document.assign(text.data());
        clientDevice = makeDevice(port);
        client.reset(arv_gc_new(clientDevice.get(), document.data(), document.size()));
        arv_gc_set_range_check_policy(client.get(), ARV_RANGE_CHECK_POLICY_ENABLE);
        arv_gc_set_access_check_policy(client.get(), ARV_ACCESS_CHECK_POLICY_ENABLE);
        for (const std::string& category : featuresOf("AppletParameters")) {
            categories.push_back(category);
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
    size_t textSize() {
        size_t size = 0;
        EXPECT_EQ(
            function<decltype(Fg_getParameterInfoXML)>("Fg_getParameterInfoXML")(&grabber, GetParam(), nullptr, &size),
            0);
        return size;
    }
    int idOf(const std::string& feature) {
        return function<decltype(Fg_getParameterIdByName)>("Fg_getParameterIdByName")(&grabber, feature.c_str());
    }
    /// Reads without the client. \return the code
    template <class Value>
    int read(Fg_Struct& from, int id, Value& value) {
        return port.read(&from, id, &value, GetParam(),
                         sizeof(Value) == sizeof(double) ? FG_PARAM_TYPE_DOUBLE : FG_PARAM_TYPE_INT32_T);
    }
    template <class Value = int>
    Value direct(int id, unsigned selector = 0) {
        Value value{};
        EXPECT_EQ(read(grabber, selected(id, selector), value), 0) << id;
        return value;
    }

    ArvGcNode* node(const std::string& name) { return arv_gc_get_node(client.get(), name.c_str()); }
    ArvGcFeatureNode* feature(const std::string& name) { return ARV_GC_FEATURE_NODE(node(name)); }
    std::vector<std::string> featuresOf(const std::string& category) {
        std::vector<std::string> names;
        ArvGcNode* const found = node(category);
        if (!ARV_IS_GC_CATEGORY(found)) {
            ADD_FAILURE() << category << " is no category";
            return names;
        }
        for (const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(found)); item != nullptr;
             item = item->next) {
            names.emplace_back(static_cast<const char*>(item->data));
        }
        return names;
    }
    bool isLocked(const std::string& name) {
        ClientError error;
        const gboolean locked = arv_gc_feature_node_is_locked(feature(name), error.place());
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
    /// \return a value that the client has no reason of its own to refuse
    double legalValue(const RegisterInfo& info) {
        if (info.format == REG_FORMAT_ENUM) return info.u.eReg.enumValues[0];
        if (info.format == REG_FORMAT_DOUBLE) return direct<double>(info.id, FG_SELECT_MINIMUM);
        return direct(info.id, FG_SELECT_MINIMUM);
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
    std::vector<std::string> categories;
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
