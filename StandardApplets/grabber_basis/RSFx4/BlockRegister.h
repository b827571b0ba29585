#pragma once

#include <array>

#include "StandardApplets/grabber_basis/Ports.h"

/// A register of a feature block: one handle and one width (in bits) a port. Handle 0 means that the design has no
/// such register.
struct BlockRegister {
    std::array<int, kPorts> handle{};
    std::array<unsigned, kPorts> width{};
};

/// Whether only some designs have the register: its absence does not count for the init status then.
constexpr bool kRequired = false;
constexpr bool kOptional = true;
/// The lookup asks for the width of the register as well.
constexpr bool kWithWidth = true;

/// Names of a block register in the design.
struct BlockRegisterRow {
    BlockRegister& reg;
    const char* nameA;  ///< port 0
    const char* nameB;  ///< port 1 of a two-camera design; null: both ports share port 0's register
    bool isOptional = false;
    bool needsWidth = false;
};
