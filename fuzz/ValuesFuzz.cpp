// Values as a person types them, with and without a unit, for parameters of every type; the first byte chooses one.
#include <array>
#include <cmath>
#include <string>

#include "fuzz/Scratch.h"
#include "tools/quillon/ToolError.h"
#include "tools/quillon/Units.h"
#include "tools/quillon/ValueText.h"

namespace {

using namespace quillon;
using host::ParameterType;

host::ParameterInfo parameter(ParameterType type, const char* unit, double maximum = 65536) {
    host::ParameterInfo info;
    info.name = "FG_FUZZED";
    info.unit = unit;
    info.type = type;
    info.hasLimits = true;
    info.limits = {.minimum = 0, .maximum = maximum, .step = 1};
    if (type == ParameterType::Enumeration)
        info.entries = {
            {0, "FG_OFF", "Off"  },
            {1, "FG_ON",  "On"   },
            {7, "",       "Seven"}
        };
    return info;
}

/// A value that was read reads the same after it was written out, which is how the tool shows it.
void readAgain(const host::ParameterInfo& info, const host::ParameterValue& value) {
    const auto* number = std::get_if<double>(&value);
    if (number != nullptr && !std::isfinite(*number)) return;
    const bool isEntry = info.type == ParameterType::Enumeration;
    const std::string text = tool::formatValue(info, value);
    if (!isEntry) expect(tool::parseValue(info, text) == value, "a written value reads the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    static const std::array kParameters{
        parameter(ParameterType::Integer, "[us]"), parameter(ParameterType::Integer, "", 4294967295.0),
        parameter(ParameterType::Double, "[us]"),  parameter(ParameterType::Double, ""),
        parameter(ParameterType::Double, "[Hz]"),  parameter(ParameterType::Integer, "[pixels]"),
        parameter(ParameterType::Enumeration, ""), parameter(ParameterType::Text, ""),
    };
    const host::ParameterInfo& info = kParameters[data[0] % kParameters.size()];
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    try {
        readAgain(info, tool::parseValue(info, text));
    } catch (const tool::ToolError& refusal) {
        expect(std::string(refusal.what()).find(info.name) != std::string::npos, "a refusal names the parameter");
    }
    tool::unitOf(text);
    tool::fittingUnits(text);
    return 0;
}
