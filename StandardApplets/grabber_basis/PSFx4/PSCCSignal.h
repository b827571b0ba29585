#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSCCSignal.h"

/// Parameter side of the camera control lines and digital inputs and outputs: a source for each line, all four at
/// once as an array, the outputs as bits, and the inputs, which are read when asked for.
class PSCCSignal : public RSCCSignal {
public:
    explicit PSCCSignal(Fg_StdMaster* FG_base);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// \return FG_ERROR for FG_DIGIO_INPUT, FG_INVALID_ARGUMENT for an unknown identifier
    int setParamToRs(int id, const void* val, unsigned int port) override;
    /// Tests the array of FG_CCSEL.
    /// \return FG_VALUE_OUT_OF_RANGE when one of the four is no source, FG_ERROR for any other parameter
    int checkParam(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    /// The names of the sources follow the kind of camera: area or line.
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

    /// \return the source of a line, from 0; CC_EXSYNC for a port or line that does not exist
    [[nodiscard]] CCsel getCC(unsigned int port, unsigned int line) const;
    /// \return FG_ERROR for a port or line that does not exist
    int setCC(unsigned int port, unsigned int line, CCsel value);
    /// Puts the four sources into the caller's memory, which need not be aligned.
    int getCCPSCCSignal(unsigned int port, void* memory) const;
    /// Takes four sources from the caller's memory.
    int setCCPSCCSignal(unsigned int port, const void* memory);
};
