#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulation/board/BoardTime.h"

namespace simulation {

/// What the bench feeds into the eight digital inputs: levels that stay, short pulses, and pulses at a rate. A pulse
/// turns the level over for kPulseWidth. It is told the time.
class InputLines {
public:
    static constexpr unsigned kInputs = 8;
    static constexpr BoardTime kPulseWidth = std::chrono::microseconds(1);

    /// The levels between pulses; bit i is input i.
    [[nodiscard]] uint32_t levels() const { return mLevels; }
    void setLevels(uint32_t levels) { mLevels = levels; }
    [[nodiscard]] bool level(unsigned input) const { return (mLevels >> input & 1U) != 0; }

    /// One pulse from \p now on; the caller sees to its first edge.
    void pulse(unsigned input, BoardTime now) { mPulseEnds[input] = now + kPulseWidth; }

    /// A pulse at every \p period, at least twice the width of one, the first one a period after \p now; none ends it.
    void setPeriod(unsigned input, std::optional<BoardTime> period, BoardTime now);
    [[nodiscard]] std::optional<BoardTime> period(unsigned input) const { return mScripts[input].period; }

    /// The next edge of \p input after \p now.
    [[nodiscard]] MaybeTime next(unsigned input, BoardTime now) const;

    /// Whether the level of \p input rises (true) or falls (false) at \p now, or does not change.
    [[nodiscard]] std::optional<bool> edge(unsigned input, BoardTime now) const;

    void skip(BoardTime by);

    /// Time starts at 0; levels and rates stay.
    void restart();

private:
    struct Script {
        std::optional<BoardTime> period;
        BoardTime origin{0};
    };

    uint32_t mLevels = 0;
    std::array<BoardTime, kInputs> mPulseEnds{};
    std::array<Script, kInputs> mScripts;
};

}  // namespace simulation
