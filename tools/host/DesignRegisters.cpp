#include "host/DesignRegisters.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

#include "fabrix/parameter_ids.h"

namespace quillon::host {

namespace {

constexpr std::string_view kPrefix = "DRA_";
constexpr int kWritable = 2;

/// Takes the width from a display name such as "AAAreaWidth (12)".
int widthIn(std::string_view displayName) {
    const size_t bracket = displayName.rfind('(');
    if (bracket == std::string_view::npos) return 0;
    const std::string_view number = displayName.substr(bracket + 1);
    int width = 0;
    std::from_chars(number.data(), number.data() + number.size(), width);
    return std::max(width, 0);
}

}  // namespace

void publishDesignRegisters() { setenv("TAVO_ENABLE_DRA", "1", 1); }

std::vector<DesignRegister> designRegisters(const ParameterCatalogue& catalogue) {
    std::vector<DesignRegister> registers;
    for (const ParameterInfo& parameter : catalogue.parameters()) {
        if (parameter.id <= FG_DIRECT_REGISTER_BASE || !parameter.name.starts_with(kPrefix)) continue;
        registers.push_back({parameter.id, parameter.name.substr(kPrefix.size()), widthIn(parameter.displayName),
                             (parameter.access & kWritable) != 0});
    }
    std::sort(registers.begin(), registers.end(),
              [](const DesignRegister& a, const DesignRegister& b) { return a.id < b.id; });
    return registers;
}

int readRegister(const Grabber& grabber, const DesignRegister& designRegister, uint32_t& value) {
    int32_t bits = 0;
    const int result = grabber.read(designRegister.id, bits);
    value = static_cast<uint32_t>(bits);
    return result;
}

}  // namespace quillon::host
