#pragma once

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the sensor readout: the block sorts the pixels of a multi-tap sensor's line into natural order.
/// Holds the readout mode per port and the seven register values of each mode. The block exists once: both ports
/// drive the same registers.
class RSSensorReadout8Tab : public RSMaster {
public:
    /// \param taps number of taps that the camera may have
    RSSensorReadout8Tab(Fg_StdMaster* master, int taps);

    /// Looks the block's registers up.
    void initRegisters();
    /// \return the readout mode, a value of FG_SENSORREADOUT; 0 for a port that does not exist
    [[nodiscard]] unsigned int getReadOutMode(unsigned int port) const;
    /// Stores the readout mode, untested.
    int setReadOutMode(unsigned int port, unsigned int value);
    /// Writes the seven registers of the stored mode, all of them even when one fails. A mode that the block does not
    /// know leaves the pixels in the order in which they come.
    /// \return the sum of the seven results: 0 when all succeed
    int writeRegisterReadOutMode(unsigned int port);
    /// \return FG_ERROR for any identifier but FG_SENSORREADOUT, else the sum of the writes' results
    int updateParameter(unsigned int port, int parameter) override;
    /// \return 0 or FG_ERROR
    int updateAllParameters(unsigned int port) override;

protected:
    using Copies = std::array<uint32_t, kPorts>;
    /// One register of the block, in the order in which they are looked up and written.
    struct BlockPart {
        BlockRegister RSSensorReadout8Tab::*reg;
        Copies RSSensorReadout8Tab::*copy;
        const char* name;
    };
    static const std::array<BlockPart, 7> kParts;

    BlockRegister mWriteReg_TapNumber;
    BlockRegister mWriteReg_TapDirection;
    BlockRegister mWriteReg_ReadOutMirror;
    BlockRegister mWriteReg_ReadOutTapOrder;
    BlockRegister mWriteReg_InsertionBypass;
    BlockRegister mWriteReg_TapSortingSchemaA;
    BlockRegister mWriteReg_TapSortingSchemaB;
    /// \name Register values last written for each port
    /// @{
    Copies mTapNumber{};
    Copies mTapDirection{};
    Copies mReadOutMirror{};
    Copies mReadOutTapOrder{};
    Copies mInsertionBypass{};
    Copies mTapSortingSchemaA{};
    Copies mTapSortingSchemaB{};
    /// @}
    std::array<unsigned, kPorts> mReadOutMode{};
    int nTap;
};
