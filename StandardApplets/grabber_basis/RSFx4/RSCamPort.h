#pragma once

#include <array>
#include <span>

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

/// Register side of the camera port: the Camera Link receiver (configuration, taps, bits, colour order, data valid,
/// gate) and the format of the pictures that it hands on.
///
/// Enables both ports once its registers are known and disables them when it goes.
class RSCamPort : public RSMaster {
public:
    explicit RSCamPort(Fg_StdMaster* Fg_Base);
    ~RSCamPort() override;

    /// Looks the registers of both ports up, whatever the design, and enables both ports.
    void initRegisters();
    /// \return whether the port has the register for PoCL-Lite cameras, which only some designs have
    [[nodiscard]] bool isPoclLiteAvailable(unsigned int port) const;
    /// Writes the registers behind a parameter.
    /// \return 0 for a parameter without register. FG_FORMAT returns the failing write's code, the others minus the
    ///         number of failed writes; a failing FG_RGB_MAP_... write, and one of the full flavour, returns 0
    int updateParameter(unsigned int port, int parameter) override;
    /// Updates every parameter, up to the first non-zero result.
    int updateAllParameters(unsigned int port) override;

protected:
    /// Sets the pixel depth from output format, alignment and input format. An input format without a depth of its
    /// own leaves it as it was.
    void updatePixelDepth(unsigned int port);
    /// \return whether the port's camera delivers colour components, other than as a Bayer mosaic
    [[nodiscard]] bool isColor(unsigned int port) const;

    BlockRegister mWriteRegCamPortConfig;       ///< one for the board
    BlockRegister mWriteRegCamPortFullFlavour;  ///< one for the board
    BlockRegister mWriteRegCamPortRgb;
    BlockRegister mWriteRegCamPortLineCam;
    BlockRegister mWriteRegCamPortDualTap;
    BlockRegister mWriteRegCamPortBits;
    BlockRegister mWriteRegCamPortUseDval;
    BlockRegister mWriteRegGateMode;
    BlockRegister mWriteRegOutputFormat;
    BlockRegister mWriteRegVauCamPortConfig;  ///< one for the board
    BlockRegister mWriteRegVauCamPortRgb;
    BlockRegister mWriteRegVauCamPortLineCam;
    BlockRegister mWriteRegCamEnable;
    BlockRegister mWriteReg_ReadOutPixelOrder;
    BlockRegister mWriteReg_CamPortPoclLite;

    unsigned mCamPortConfig = 0;       ///< one for the board
    unsigned mCamPortFullFlavour = 0;  ///< one for the board
    std::array<unsigned, kPorts> mCamPortRgb{};
    std::array<unsigned, kPorts> mCamPortLineCam{};
    std::array<unsigned, kPorts> mCamPortDualTap{};
    std::array<unsigned, kPorts> mCamPortBits{};  ///< bits of a pixel of the input format
    std::array<unsigned, kPorts> mCamPortLite{};
    std::array<unsigned, kPorts> mCamPortUseDval{};
    std::array<unsigned, kPorts> mGateMode{};
    std::array<unsigned, kPorts> mOutputFormat{};
    std::array<unsigned, kPorts> mCameraLinkCamType{};
    std::array<unsigned, kPorts> mPixelDepth{};
    std::array<unsigned, kPorts> mAlignment{};
    /// Positions of the colour components in serial RGB.
    std::array<unsigned, kPorts> mComponentMapRed{0, 0};
    std::array<unsigned, kPorts> mComponentMapGreen{1, 1};
    std::array<unsigned, kPorts> mComponentMapBlue{2, 2};
    bool mIsBayer = false;        ///< the camera delivers a Bayer mosaic
    bool mIsCamPortFull = false;  ///< full Camera Link configuration

private:
    /// One register and what it is to hold.
    struct Write {
        int handle;
        unsigned value;
    };

    int failedWrites(std::span<const Write> writes);
    void enablePorts(unsigned value);
    void takeInputFormat(unsigned port);
    int writeInputFormat(unsigned port);
    int writeInputFormatMedium(unsigned bitsCode);
    int writeOutputFormat(unsigned port);
    int writeUseDval(unsigned port);
    int writeConfiguration(unsigned port);
    int writeCameraType(unsigned port);
    void writePixelOrder(unsigned port);
};
