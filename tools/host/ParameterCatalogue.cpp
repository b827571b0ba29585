#include "host/ParameterCatalogue.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <type_traits>

namespace quillon::host {

namespace {

constexpr std::string_view kPrefix = "FG_";

std::string textOf(const char* text) { return text == nullptr ? "" : text; }

/// The form in which names are compared: upper case, without the prefix.
std::string comparable(std::string_view name) {
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    if (upper.starts_with(kPrefix)) upper.erase(0, kPrefix.size());
    return upper;
}

template <class Register>
Limits limitsOf(const Register& values) {
    // A register of 32 bits is published with a maximum of all ones, which a signed node holds as -1.
    if constexpr (std::is_same_v<decltype(values.to), int32_t>) {
        if (values.from >= 0 && values.to < values.from) {
            return {static_cast<double>(values.from), static_cast<double>(static_cast<uint32_t>(values.to)),
                    static_cast<double>(values.steps)};
        }
    }
    return {static_cast<double>(values.from), static_cast<double>(values.to), static_cast<double>(values.steps)};
}

void takeLimits(ParameterInfo& parameter, ParameterType type, const Limits& limits) {
    parameter.type = type;
    parameter.hasLimits = true;
    parameter.limits = limits;
}

void takeEntries(ParameterInfo& parameter, const EnumReg& entries) {
    parameter.type = ParameterType::Enumeration;
    for (int i = 0; i < entries.nrOfElements; ++i) {
        parameter.entries.push_back(
            {entries.enumValues[i], textOf(entries.enumDefName[i]), textOf(entries.enumNames[i])});
    }
}

ParameterInfo fromNode(const RegisterInfo& node, const std::string& group) {
    ParameterInfo parameter;
    parameter.id = node.id;
    parameter.name = textOf(node.parameterName);
    parameter.displayName = textOf(node.name);
    parameter.unit = textOf(node.unit);
    parameter.group = group;
    parameter.access = node.accessFlags;
    switch (node.format) {
        case REG_FORMAT_INT:
            takeLimits(parameter, ParameterType::Integer, limitsOf(node.u.iReg));
            break;
        case REG_FORMAT_UINT:
            takeLimits(parameter, ParameterType::Integer, limitsOf(node.u.uiReg));
            break;
        case REG_FORMAT_DOUBLE:
            takeLimits(parameter, ParameterType::Double, limitsOf(node.u.dReg));
            break;
        case REG_FORMAT_ENUM:
            takeEntries(parameter, node.u.eReg);
            break;
        case REG_FORMAT_STRING:
            parameter.type = ParameterType::Text;
            break;
        default:
            parameter.type = ParameterType::Structure;
            break;
    }
    return parameter;
}

/// Number of single-letter insertions, deletions and replacements that turn one name into the other.
size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

bool ParameterInfo::isMeasured() const { return id == FG_PLX_CLK || id == FG_MEASURED_PCIE_CLK; }

ParameterCatalogue::ParameterCatalogue(const Grabber& grabber, int port) {
    const RegisterInfo* group = grabber.functions().getParameterInfo(grabber.handle(), port);
    for (; group != nullptr; group = group->next) addGroup(*group, textOf(group->name));
    addUngrouped(grabber, port);
}

void ParameterCatalogue::addGroup(const RegisterInfo& group, const std::string& path) {
    for (int i = 0; i < group.u.gReg.nrOfElements; ++i) {
        const RegisterInfo& node = *group.u.gReg.elements[i];
        if (node.format == REG_FORMAT_GROUP) {
            addGroup(node, path + " / " + textOf(node.name));
        } else {
            mParameters.push_back(fromNode(node, path));
        }
    }
}

void ParameterCatalogue::addUngrouped(const Grabber& grabber, int port) {
    const int count = grabber.functions().getNrOfParameter(grabber.handle());
    for (int i = 0; i < count; ++i) {
        const int id = grabber.functions().getParameterId(grabber.handle(), i);
        const bool isKnown = std::any_of(mParameters.begin(), mParameters.end(),
                                         [id](const ParameterInfo& parameter) { return parameter.id == id; });
        if (isKnown) continue;
        ParameterInfo parameter;
        parameter.id = id;
        parameter.name = textOf(grabber.functions().getParameterName(grabber.handle(), i));
        parameter.access = std::max(grabber.access(id, port), 0);
        int32_t from = 0;
        int32_t to = 0;
        if (grabber.limitWidth(id, port) == sizeof(double)) {
            Limits limits;
            if (grabber.limits(id, limits.minimum, limits.maximum, port) >= 0) {
                takeLimits(parameter, ParameterType::Double, limits);
            }
        } else if (grabber.limits(id, from, to, port) >= 0) {
            takeLimits(parameter, ParameterType::Integer, {static_cast<double>(from), static_cast<double>(to), 0});
        }
        mParameters.push_back(std::move(parameter));
    }
}

const ParameterInfo* ParameterCatalogue::find(std::string_view name) const {
    const std::string wanted = comparable(name);
    for (const ParameterInfo& parameter : mParameters) {
        if (comparable(parameter.name) == wanted) return &parameter;
    }
    return nullptr;
}

std::vector<std::string> ParameterCatalogue::suggestions(std::string_view name) const {
    constexpr size_t kMostSuggestions = 5;
    const std::string wanted = comparable(name);
    std::vector<std::pair<size_t, std::string>> near;
    for (const ParameterInfo& parameter : mParameters) {
        const std::string candidate = comparable(parameter.name);
        const bool isContained = wanted.size() >= 3 && candidate.find(wanted) != std::string::npos;
        const size_t distance = isContained ? 1 : editDistance(wanted, candidate);
        if (distance <= 1 + wanted.size() / 3) near.emplace_back(distance, parameter.name);
    }
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (size_t i = 0; i < near.size() && i < kMostSuggestions; ++i) names.push_back(near[i].second);
    return names;
}

std::string aboutParameter(const Grabber& grabber, int query, const std::string& name) {
    std::string text = name;
    return grabber.read(query, text) < 0 ? "" : text;
}

int readValue(const Grabber& grabber, const ParameterInfo& parameter, ParameterValue& value, int port) {
    switch (parameter.type) {
        case ParameterType::Integer:
        case ParameterType::Enumeration:
            return grabber.read(parameter.id, value.emplace<int32_t>(), port);
        case ParameterType::Double:
            return grabber.read(parameter.id, value.emplace<double>(), port);
        case ParameterType::Text: {
            if (!std::holds_alternative<std::string>(value)) value = std::string();
            return grabber.read(parameter.id, std::get<std::string>(value), port);
        }
        case ParameterType::Structure:
            break;
    }
    return FG_TYPE_NOT_SUPPORTED;
}

int writeValue(Grabber& grabber, const ParameterInfo& parameter, const ParameterValue& value, int port) {
    return std::visit([&](const auto& typed) { return grabber.write(parameter.id, typed, port); }, value);
}

}  // namespace quillon::host
