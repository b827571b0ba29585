#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace simulation {

/// A time of the board, counted from its configuration, or a length of time.
using BoardTime = std::chrono::nanoseconds;

/// A time that may never come.
using MaybeTime = std::optional<BoardTime>;

[[nodiscard]] constexpr MaybeTime earlier(MaybeTime one, MaybeTime other) {
    if (!one) return other;
    return other ? std::min(*one, *other) : one;
}

}  // namespace simulation
