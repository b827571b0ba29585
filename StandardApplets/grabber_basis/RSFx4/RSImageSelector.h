#pragma once

#include <array>

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the image selector, which passes one image of every period of images on: cached period and
/// index per port, and their registers.
class RSImageSelector : public RSMaster {
public:
    explicit RSImageSelector(Fg_StdMaster* Fg_Base);

    /// Looks the block's registers up. The names of port 1 count for the register-init status even where both ports
    /// then share port 0's registers.
    void initRegisters();

    /// \name Cached values
    /// A setter stores a value and returns 0; it returns FG_INVALID_PORT, and a getter 0, for a port that does not
    /// exist.
    /// @{
    int setImgSelectPeriod(unsigned int port, unsigned int period);
    [[nodiscard]] unsigned int getImgSelectPeriod(unsigned int port) const;
    int setImgSelect(unsigned int port, unsigned int value);
    [[nodiscard]] unsigned int getImgSelect(unsigned int port) const;
    /// @}

    /// Writes one register; while one camera uses both connectors, the port's value goes to both slots. What the
    /// writes return is not looked at.
    /// \return 0, or FG_ERROR for an identifier without register
    int updateParameter(unsigned int port, int parameter) override;
    /// Writes the period, then the index.
    int updateAllParameters(unsigned int port) override;

protected:
    /// One parameter of the selector: how it is cached and how it reaches its register.
    struct Side {
        int id;
        int (RSImageSelector::*set)(unsigned int port, unsigned int value);
        unsigned int (RSImageSelector::*get)(unsigned int port) const;
        BlockRegister RSImageSelector::*reg;
        unsigned subtrahend;  ///< 1 where the register holds the count minus one
    };
    static const std::array<Side, 2> kSides;
    /// \return the row of a parameter, or null
    static const Side* sideOf(int id);

    BlockRegister mWriteReg_ImgSelectPeriod;
    BlockRegister mWriteReg_ImgSelect;

private:
    std::array<unsigned, kPorts> mImgSelectPeriod{1, 1};
    std::array<unsigned, kPorts> mImgSelect{};
};
