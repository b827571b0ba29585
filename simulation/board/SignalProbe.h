#pragma once

#include <cstdint>

#include "simulation/board/BoardTime.h"

namespace simulation {

/// What a probe on a signal has seen since the configuration.
struct SignalProbe {
    bool level = false;
    uint64_t rising = 0;  // edges
    uint64_t falling = 0;
    BoardTime lastRising{0};
    BoardTime lastFalling{0};

    void see(bool newLevel, BoardTime now) {
        if (newLevel == level) return;
        level = newLevel;
        ++(level ? rising : falling);
        (level ? lastRising : lastFalling) = now;
    }
};

}  // namespace simulation
