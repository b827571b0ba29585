#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/design/Design.h"

namespace simulation {

/// The registers of a configured board: 64-bit values behind handles from 1 to N. Any thread may call it.
class RegisterStore {
public:
    /// Takes over the registers of \p design with their initial values; no other thread may use the store meanwhile.
    void configure(const Design& design);

    /// The number of registers, which is the largest handle.
    [[nodiscard]] int count() const { return static_cast<int>(mRegisters.size()); }

    /// The host writes: what lies above the register's width is cut off.
    /// \return 0, kNoRegister for an unknown handle, kReadOnly; a refused write changes nothing.
    [[nodiscard]] int write(int handle, uint64_t value);

    /// The hardware itself sets a register, also one that the host cannot write: what lies above its width is cut off.
    /// Nothing happens for an unknown handle.
    void set(int handle, uint64_t value);

    /// The host reads; a register that it can write may be read as well.
    /// \return 0, or kNoRegister with \p value left alone.
    [[nodiscard]] int read(int handle, uint64_t& value) const;

    /// The handle of a register, or 0 where the design has none of this name.
    [[nodiscard]] int find(std::string_view name) const;

    /// The name behind a handle; empty for an unknown one.
    [[nodiscard]] std::string nameOf(int handle) const;

    /// Bits of a register; 0 where the design has none of this handle.
    [[nodiscard]] unsigned widthOf(int handle) const;

    /// What the hardware sees: the value, or 0 where the design has no such register.
    [[nodiscard]] uint64_t valueOf(int handle) const;

private:
    [[nodiscard]] bool has(int handle) const;

    std::vector<RegisterInfo> mRegisters;
    std::vector<std::atomic<uint64_t>> mValues;  // at index handle - 1
};

}  // namespace simulation
