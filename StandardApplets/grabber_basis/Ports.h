#pragma once

/// Camera ports of a grabber: 0 is port A, 1 is port B.
constexpr unsigned kPorts = 2;

/// \return whether \p port can index an array of kPorts; a negative or larger number cannot
constexpr bool isPort(int port) { return port >= 0 && port < static_cast<int>(kPorts); }
constexpr bool isPort(unsigned port) { return port < kPorts; }
