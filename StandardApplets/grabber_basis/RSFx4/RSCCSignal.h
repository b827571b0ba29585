#pragma once

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "fabrix/cc_signals.h"

/// Camera control lines of a Camera Link connector.
constexpr unsigned kCcLines = 4;

/// Register side of the camera control lines and of the trigger board's digital inputs and outputs. The outputs and
/// inputs exist once; each port has camera control lines of its own where a second connector is in use.
///
/// The operations of this class answer FG_ERROR for a port that does not exist and touch nothing then.
class RSCCSignal : public RSMaster {
public:
    explicit RSCCSignal(Fg_StdMaster* Fg_Base);

    /// Back to a block without registers: trigger on CC1, the other lines high, outputs 0.
    void makeRegistersNull() override;
    /// Looks the block's registers up. Port B shares the lines of port A unless the design is a dual one or one camera
    /// uses both connectors; then it has none but its own.
    void initRegisters();
    /// Copies the sources of the four lines to \p sel.
    int getCCSel(unsigned int port, CCsel* sel) const;
    /// Stores the sources of the four lines.
    int setCCSel(unsigned int port, const CCsel* sel);
    /// Reads the digital inputs now.
    /// \return the low 32 bits of the register, all ones when it cannot be read; 0 for a port that does not exist
    unsigned int getDigIoIn(unsigned int port);
    int setDigIoOut(unsigned int port, unsigned int value);
    [[nodiscard]] unsigned int getDigIoOut(unsigned int port) const;
    /// Writes the port's four lines to its configuration register.
    int writeCcSelDirect(unsigned int port);
    int writeRegisterDigIoOut(unsigned int port);
    /// Reads the digital inputs into the cache.
    int readRegisterDigIoIn(unsigned int port);

    /// Writes the register behind a parameter. While one camera uses both connectors, all lines of the second one
    /// are high.
    /// \return FG_ERROR for an identifier without a register to write, else the result of the write
    int updateParameter(unsigned int port, int parameter) override;
    /// Writes the digital outputs, then the lines, these also after a failure.
    /// \return 0 or FG_ERROR
    int updateAllParameters(unsigned int port) override;

protected:
    struct PortData {
        std::array<CCsel, kCcLines> CCSel{CC_EXSYNC, CC_VCC, CC_VCC, CC_VCC};
        unsigned v_DigIoIn = 0;  ///< as read last
        unsigned v_DigIoOut = 0;
        int writeReg_CcConfig = 0;
        int readReg_DigIoIn = 0;
        int writeReg_DigIoOut = 0;
    };
    std::array<PortData, kPorts> m_portdata;
};
