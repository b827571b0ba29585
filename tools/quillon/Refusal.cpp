#include "Refusal.h"

#include <fmt/format.h>

#include <cmath>

#include "ValueText.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

using host::Limits;
using host::ParameterCatalogue;
using host::ParameterInfo;
using host::ParameterType;
using host::ParameterValue;

double numberOf(const ParameterValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* integer = std::get_if<int32_t>(&value)) return *integer;
    return 0;
}

std::string limitWithUnit(const ParameterInfo& parameter, double limit) {
    return withUnit(parameter, formatLimit(parameter, limit));
}

std::string allowedRange(const ParameterInfo& parameter) {
    const Limits& limits = parameter.limits;
    std::string text =
        fmt::format("{} to {}", formatLimit(parameter, limits.minimum), limitWithUnit(parameter, limits.maximum));
    // The check looks at the step of integers only.
    if (parameter.type == ParameterType::Integer && limits.step > 1) {
        text += " in steps of " + formatLimit(parameter, limits.step);
    }
    return text;
}

std::string outOfRange(const ParameterInfo& parameter, const ParameterValue& value) {
    if (parameter.type == ParameterType::Enumeration) {
        return "no such entry; allowed: " + formatEntries(parameter);
    }
    if (!parameter.hasLimits) return "outside the limits";
    const double number = numberOf(value);
    std::string text = "not a number";
    if (number < parameter.limits.minimum) {
        text = "below the minimum " + limitWithUnit(parameter, parameter.limits.minimum);
    } else if (number > parameter.limits.maximum) {
        text = "above the maximum " + limitWithUnit(parameter, parameter.limits.maximum);
    }
    return text + "; allowed: " + allowedRange(parameter);
}

std::string offStep(const ParameterInfo& parameter, const ParameterValue& value) {
    const Limits& limits = parameter.limits;
    if (!parameter.hasLimits || limits.step < 1) return "not a multiple of the step";
    const double below = std::floor(numberOf(value) / limits.step) * limits.step;  // steps count from 0
    const double above = below + limits.step;
    std::string nearest;
    if (below >= limits.minimum) nearest = formatLimit(parameter, below);
    if (above <= limits.maximum) {
        if (!nearest.empty()) nearest += " or ";
        nearest += formatLimit(parameter, above);
    }
    return fmt::format("not a multiple of the step {}; nearest allowed: {}", limitWithUnit(parameter, limits.step),
                       nearest);
}

std::string notWritable(const ParameterCatalogue& catalogue, const ParameterInfo& parameter) {
    const ParameterInfo* width = catalogue.find("FG_WIDTH");
    const bool isEverythingLocked = parameter.id != FG_GLOBAL_ACCESS && width != nullptr && !width->isWritable();
    if (isEverythingLocked) return "FG_GLOBAL_ACCESS locks all parameters; set FG_GLOBAL_ACCESS=NONE first";
    return fmt::format("it cannot be written in the present settings; 'quillon describe {}' finds what locks it",
                       parameter.name);
}

std::string reason(const ParameterCatalogue& catalogue, const ParameterInfo& parameter, const ParameterValue& value,
                   int code) {
    if (code == FG_VALUE_OUT_OF_RANGE) return outOfRange(parameter, value);
    if (code == FG_NOT_A_STEP) return offStep(parameter, value);
    if (code == FG_NOT_WRITABLE) return notWritable(catalogue, parameter);
    const host::ResultCodeRow* row = host::findResultCode(code);
    if (row == nullptr) return "the board refused it; the value may have been stored but not written";
    return fmt::format("{}; {}", row->meaning, row->remedy);
}

}  // namespace

std::string explainRefusal(const ParameterCatalogue& catalogue, const ParameterInfo& parameter,
                           const ParameterValue& value, int code) {
    return fmt::format("{} = {} refused: {} (code {})", parameter.name, formatValue(parameter, value),
                       reason(catalogue, parameter, value, code), code);
}

}  // namespace quillon::tool
