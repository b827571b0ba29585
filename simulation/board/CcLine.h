#pragma once

#include <cstdint>

namespace simulation {

/// One of the four camera control lines, as the configuration register drives it.
struct CcLine {
    static constexpr unsigned kLines = 4;
    static constexpr unsigned kSignals = 4;  // sources 0 to 3: ExSync, ExSync2, flash, clock; the others rest low

    unsigned source = 0;  // 0 to 7
    bool isInverted = false;

    /// \param line 0 to 3 for CC1 to CC4: each has four bits of the register, three for the source, one to invert.
    [[nodiscard]] static constexpr CcLine of(uint64_t configuration, unsigned line) {
        const uint64_t bits = configuration >> (4 * line);
        return {static_cast<unsigned>(bits & 7), (bits & 8) != 0};
    }

    [[nodiscard]] constexpr bool isConstant() const { return source >= kSignals; }

    /// The level of a constant line.
    [[nodiscard]] constexpr bool level() const { return isInverted; }

    bool operator==(const CcLine&) const = default;
};

}  // namespace simulation
