#pragma once

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the acquisition window: cached window per port and its conversion to the FPGA's units, which are
/// the pixels of a clock horizontally and the lines of a group vertically.
class RSWindow : public RSMaster {
public:
    explicit RSWindow(Fg_StdMaster* Fg_Base);

    /// Looks the block's registers up.
    void initRegisters();
    /// Writes one register. FG_FORMAT rewrites the width, whose unit depends on it.
    /// \return FG_INVALID_ARGUMENT for an identifier without register, else the result of the write
    int updateParameter(unsigned int port, int parameter) override;
    /// Writes all four registers, up to the first that fails.
    int updateAllParameters(unsigned int port) override;

protected:
    /// One parameter of the window: where it is cached and how it reaches its register.
    struct Side {
        int id;
        std::array<unsigned, kPorts> RSWindow::*cache;  ///< in pixels or lines
        BlockRegister RSWindow::*reg;
        int (Fg_StdMaster::*unit)(int port);  ///< pixels or lines of one register unit
        unsigned subtrahend;                  ///< 1 where the register holds the count minus one
    };
    static const std::array<Side, 4> kSides;
    /// \return the row of a parameter, or null
    static const Side* sideOf(int id);

    std::array<unsigned, kPorts> mHeight{};
    std::array<unsigned, kPorts> mWidth{};
    std::array<unsigned, kPorts> mXOffset{};
    std::array<unsigned, kPorts> mYOffset{};
    BlockRegister mWriteReg_AreaWidth;
    BlockRegister mWriteReg_AreaHeight;
    BlockRegister mWriteReg_AreaXPos;
    BlockRegister mWriteReg_AreaYPos;
};
