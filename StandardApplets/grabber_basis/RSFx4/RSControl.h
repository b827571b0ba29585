#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the control block: acquisition enable (global work), reset, SDRAM enable, camera select and
/// buffer status. The master makes it first of all modules; its registers are resolved once the FPGA is configured.
class RSControl : public RSMaster {
public:
    explicit RSControl(Fg_StdMaster* Fg_Base);

    /// Looks the block's registers up. A missing buffer status does not count for the register-init status.
    void initRegisters();
    /// Switches the acquisition of a path on or off (`AAglobal_work`), then reads the camera status of connector 0.
    /// \return the result of the write
    int writeEnableDisableGlobalwork(unsigned int port, bool enable);
    /// Writes \p value to the reset register (`AAReset`), then reads the camera status of connector 0.
    /// \return the result of the write
    int writeRegisterReset(unsigned int port, unsigned int value);
    /// Pulses the reset: five writes of 1, one of 0.
    /// \return the sum of the six results
    int writeReset(unsigned int port);
    /// Switches the image buffer of a port on (`AASdramEnable`).
    int enableSDRAM(unsigned int port);
    /// \return the low 32 bits of `AABufferStatus`: 0 without that register, all ones when it cannot be read
    unsigned int getBufferStatus(unsigned int port);

    /// Writes the camera select register for FG_PORT; FG_ERROR for an identifier without register.
    int updateParameter(unsigned int port, int parameter) override;
    int updateAllParameters(unsigned int port) override;

protected:
    BlockRegister mWriteReg_GlobalWork;
    BlockRegister mWriteReg_Reset;
    BlockRegister mWriteReg_SdRamEnableDisable;
    BlockRegister mWriteReg_CamSelect;
    BlockRegister mReadReg_BufferStatus;
};
