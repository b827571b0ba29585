#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "simulation/board/RegisterStore.h"

namespace simulation {

/// A register that a stage looks at, and what it counts as in a design that lacks it.
struct StageRegister {
    std::string_view name;
    uint64_t valueWithout = 0;
};

/// The registers of one stage, found by their names once. configure() while no other thread uses the row.
template <size_t N>
class RegisterRow {
public:
    using Values = std::array<uint64_t, N>;

    explicit constexpr RegisterRow(const std::array<StageRegister, N>& registers) : mRegisters(registers) {}

    void configure(const RegisterStore& store) {
        std::transform(mRegisters.begin(), mRegisters.end(), mHandles.begin(),
                       [&](const StageRegister& wanted) { return store.find(wanted.name); });
    }

    /// Whether \p handle is a register of this row.
    [[nodiscard]] bool has(int handle) const {
        return handle != 0 && std::find(mHandles.begin(), mHandles.end(), handle) != mHandles.end();
    }

    /// The present values, in the order of the row.
    [[nodiscard]] Values values(const RegisterStore& store) const {
        Values values{};
        for (size_t i = 0; i < N; ++i) {
            values[i] = mHandles[i] == 0 ? mRegisters[i].valueWithout : store.valueOf(mHandles[i]);
        }
        return values;
    }

private:
    const std::array<StageRegister, N>& mRegisters;
    std::array<int, N> mHandles{};
};

}  // namespace simulation
