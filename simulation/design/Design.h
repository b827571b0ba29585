#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace simulation {

/// Direction codes of a register, as the design image and the host interface have them.
constexpr uint32_t kDirectionWrite = 1;
constexpr uint32_t kDirectionRead = 2;

/// The value that fits a register of \p width bits: what lies above is cut off.
[[nodiscard]] constexpr uint64_t maskToWidth(uint64_t value, uint32_t width) {
    return width >= 64 ? value : value & ((uint64_t{1} << width) - 1);
}

struct RegisterInfo {
    std::string name;
    uint32_t width = 0;  // bits, 1 to 64
    uint32_t direction = kDirectionWrite;
    uint64_t initialValue = 0;

    bool operator==(const RegisterInfo&) const = default;
};

struct UserInfo {
    std::string name;
    std::string value;

    bool operator==(const UserInfo&) const = default;
};

/// What a design tells of itself. The register at index i has the number i + 1, which is also its handle.
struct Design {
    uint32_t boardType = 0;
    std::vector<RegisterInfo> registers;
    std::vector<UserInfo> userInfos;

    bool operator==(const Design&) const = default;
};

}  // namespace simulation
