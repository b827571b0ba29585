#pragma once

#include <array>
#include <cstdint>

#include "simulation/board/RegisterRow.h"

namespace simulation {

/// The image selector: of every \p period frames only the one of \p index, from 0, goes on to the DMA.
struct ImageSelection {
    static constexpr std::array kRegisters{StageRegister{"AAImgSelectPeriod"}, StageRegister{"AAImgSelect"}};
    using Values = std::array<uint64_t, kRegisters.size()>;

    uint64_t period = 1;
    uint64_t index = 0;

    /// The period register counts from 0. No design has one of more than 32 bits; a wider one counts as its low 32.
    [[nodiscard]] static constexpr ImageSelection of(const Values& values) {
        return {(values[0] & 0xFFFFFFFFu) + 1, values[1]};
    }

    /// Whether frames go on at all: none has an index beyond the period.
    [[nodiscard]] constexpr bool passesAny() const { return index < period; }

    /// Whether frame \p number, from 1, goes on.
    [[nodiscard]] constexpr bool passes(uint64_t number) const { return (number - 1) % period == index; }
};

}  // namespace simulation
