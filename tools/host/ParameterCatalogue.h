#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/Grabber.h"

namespace quillon::host {

enum class ParameterType { Integer, Double, Enumeration, Text, Structure };

struct EnumerationEntry {
    int32_t value;
    std::string name;  ///< symbolic name, may be empty
    std::string displayName;
};

/// Limits of an integer or a double; every 32-bit integer is exact in a double. A step of 0 means any value.
struct Limits {
    double minimum = 0;
    double maximum = 0;
    double step = 0;
};

/// One published parameter, as it stood when the catalogue was made.
struct ParameterInfo {
    int id = 0;
    std::string name;         ///< for example "FG_WIDTH"
    std::string displayName;  ///< empty for a parameter outside the groups
    std::string unit;         ///< as published, for example "[pixels]"; may be empty
    std::string group;        ///< groups from the top, joined by " / "; empty outside the groups
    ParameterType type = ParameterType::Structure;
    int access = 0;  ///< access bits: 1 readable, 2 writable, 4 also while an acquisition runs
    bool hasLimits = false;
    Limits limits;
    std::vector<EnumerationEntry> entries;

    [[nodiscard]] bool isReadable() const { return (access & 1) != 0; }
    [[nodiscard]] bool isWritable() const { return (access & 2) != 0; }
    /// \return whether it can be written while an acquisition runs
    [[nodiscard]] bool isChangeable() const { return (access & 4) != 0; }
    /// \return whether its first read takes a measurement, which lasts 100 ms
    [[nodiscard]] bool isMeasured() const;
    /// \return whether its values are read and written as the bits of an unsigned number
    [[nodiscard]] bool isUnsigned() const { return type == ParameterType::Integer && limits.maximum > INT32_MAX; }
};

/// An integer above 2147483647 stands as the bits that it takes in 32.
using ParameterValue = std::variant<int32_t, double, std::string>;

/// The parameters that a grabber publishes on one port: first those of the information tree in its order, then
/// those that stand in no group. A copy: it stays valid, and says what was true when it was made.
class ParameterCatalogue {
public:
    explicit ParameterCatalogue(const Grabber& grabber, int port = 0);

    [[nodiscard]] std::span<const ParameterInfo> parameters() const { return mParameters; }

    /// \param name with or without "FG_", in any letter case
    /// \return the parameter, valid as long as the catalogue, or null
    [[nodiscard]] const ParameterInfo* find(std::string_view name) const;
    /// \return at most five names that resemble \p name, the nearest first
    [[nodiscard]] std::vector<std::string> suggestions(std::string_view name) const;

private:
    void addGroup(const RegisterInfo& group, const std::string& path);
    void addUngrouped(const Grabber& grabber, int port);

    std::vector<ParameterInfo> mParameters;
};

/// \param query FG_PARAM_DESCR or FG_DOC_URL
/// \return what the applet says about the parameter of this name; empty when it says nothing
std::string aboutParameter(const Grabber& grabber, int query, const std::string& name);

/// Reads a parameter as its type says. A text in \p value is the question of a text query.
/// \return the applet's result, or FG_TYPE_NOT_SUPPORTED for a structure
[[nodiscard]] int readValue(const Grabber& grabber, const ParameterInfo& parameter, ParameterValue& value,
                            int port = 0);

/// Writes a parameter; \p value must hold what its type says.
/// \return the applet's result
[[nodiscard]] int writeValue(Grabber& grabber, const ParameterInfo& parameter, const ParameterValue& value,
                             int port = 0);

}  // namespace quillon::host
