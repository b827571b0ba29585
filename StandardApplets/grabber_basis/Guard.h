#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "fabrix/result_codes.h"

/// Runs the body of an exported function: nothing is thrown into the host.
/// \return the body's result; null where that is a pointer and the body threw, else FG_OUT_OF_RESOURCES for an
///         allocation failure and FG_ERROR for any other exception
template <class Body>
auto guarded(Body&& body) noexcept -> decltype(body()) {
    using Result = decltype(body());
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        if constexpr (std::is_pointer_v<Result>) {
            return nullptr;
        } else {
            return FG_OUT_OF_RESOURCES;
        }
    } catch (...) {
        if constexpr (std::is_pointer_v<Result>) {
            return nullptr;
        } else {
            return FG_ERROR;
        }
    }
}
