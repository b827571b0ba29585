#pragma once

#include <exception>
#include <new>
#include <type_traits>

#include "simulation/tavo_hw/BoardRegistry.h"

namespace simulation {

/// What an operation answers instead of a result: its code where the result can be negative, else 0 or null.
template <class Result>
Result failureOf(int code) {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else if constexpr (std::is_unsigned_v<Result>) {
        return Result{0};
    } else {
        return static_cast<Result>(code);
    }
}

/// Runs \p work on the board of \p device. No exception leaves the library.
template <class Result, class Work>
Result onBoard(const FgDevice* device, Work&& work) {
    try {
        return device == nullptr ? failureOf<Result>(kNoDevice) : work(*boards().find(device));
    } catch (const std::bad_alloc&) {
        return failureOf<Result>(report({kOutOfMemory, "memory is short"}));
    } catch (const std::exception& error) {
        return failureOf<Result>(report({kInternal, error.what()}));
    }
}

}  // namespace simulation
