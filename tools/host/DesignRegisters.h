#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/ParameterCatalogue.h"

namespace quillon::host {

/// One register of the loaded design, as the applet publishes it.
struct DesignRegister {
    int id = 0;        ///< identifier of its parameter
    std::string name;  ///< for example "AAAreaWidth"
    int width = 0;     ///< in bits; 0 when the applet does not tell
    bool isWritable = false;
};

/// Makes the applet publish its design's registers in every grabber that this process opens from now on. Changes the
/// process's environment: not beside other threads that use it.
void publishDesignRegisters();

/// \return the registers in the order of the design; none when the grabber was opened without publishing them
std::vector<DesignRegister> designRegisters(const ParameterCatalogue& catalogue);

/// Reads the low 32 bits of a register from the board.
/// \return the applet's result
[[nodiscard]] int readRegister(const Grabber& grabber, const DesignRegister& designRegister, uint32_t& value);

}  // namespace quillon::host
