#include "StandardApplets/grabber_basis/RSFx4/RSCamPort.h"

#include <algorithm>
#include <tuple>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"
#include "fabrix/parameter_ids.h"

namespace {

// Entries of FG_FORMAT.
constexpr unsigned kGray16 = 1;
constexpr unsigned kColor24 = 2;
constexpr unsigned kGray8 = 3;
constexpr unsigned kColor48 = 6;

constexpr unsigned kLeftAligned = 1;
constexpr unsigned kEightBits = 8;
constexpr unsigned kSixteenBits = 16;

/// Contents of the colour register. A single- or dual-tap format carries serial RGB when the camera is a colour one.
enum Rgb : unsigned { kGray = 0, kParallelRgb = 1, kSerialRgb = 2 };

/// How an input format (FG_CAMERA_LINK_CAMTYP) reaches the registers.
struct InputFormat {
    unsigned format;
    Rgb rgb;  ///< kSerialRgb: only for a colour camera, else kGray
    unsigned dualTap;
    unsigned bits;   ///< of a pixel
    unsigned depth;  ///< pixel depth of right aligned output; 0 leaves it as it was
    unsigned lite;
    unsigned fullFlavour;
};

// clang-format off
constexpr std::array kInputFormats{
    //          format  RGB           dual  bits depth lite full flavour
    InputFormat{8,      kSerialRgb,   0,    8,   8,    0,   0},
    InputFormat{10,     kSerialRgb,   0,    10,  10,   0,   0},
    InputFormat{12,     kSerialRgb,   0,    12,  12,   0,   0},
    InputFormat{14,     kSerialRgb,   0,    14,  14,   0,   0},
    InputFormat{16,     kSerialRgb,   0,    16,  16,   0,   0},
    InputFormat{108,    kSerialRgb,   1,    8,   8,    0,   0},
    InputFormat{110,    kSerialRgb,   1,    10,  10,   0,   0},
    InputFormat{112,    kSerialRgb,   1,    12,  12,   0,   0},
    InputFormat{130,    kGray,        0,    8,   0,    1,   0},
    InputFormat{140,    kGray,        0,    10,  0,    1,   0},
    InputFormat{208,    kGray,        1,    8,   8,    0,   0},
    InputFormat{210,    kGray,        1,    10,  10,   0,   0},
    InputFormat{212,    kGray,        1,    12,  12,   0,   0},
    InputFormat{216,    kParallelRgb, 1,    30,  10,   0,   0},
    InputFormat{218,    kParallelRgb, 1,    36,  12,   0,   0},
    InputFormat{308,    kGray,        0,    8,   0,    0,   0},
    InputFormat{310,    kGray,        0,    8,   0,    0,   1},
    InputFormat{500,    kParallelRgb, 0,    24,  8,    0,   0},
};

/// The order of a full update.
constexpr std::array kUpdateOrder{
    FG_CAMERA_TYPE, FG_CAMPORT_CONFIG, FG_CAMERA_LINK_CAMTYP, FG_FORMAT, FG_USEDVAL, FG_BITALIGNMENT, FG_RGB_MAP_RED,
};
// clang-format on

const InputFormat* inputFormat(unsigned format) {
    const auto* found = std::find_if(kInputFormats.begin(), kInputFormats.end(),
                                     [format](const InputFormat& row) { return row.format == format; });
    return found == kInputFormats.end() ? nullptr : found;
}

/// \return the content of the bits register for the bits of a pixel
unsigned bitsCodeOf(unsigned bits) {
    switch (bits) {
        case 10:
        case 30:
            return 1;
        case 12:
        case 36:
            return 2;
        case 14:
            return 3;
        case 16:
            return 4;
        default:
            return 0;
    }
}

/// The fourth position, which no component takes, stays 3.
unsigned pixelOrderOf(unsigned red, unsigned green, unsigned blue) { return 192 + 16 * blue + 4 * green + red; }

}  // namespace

RSCamPort::RSCamPort(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

RSCamPort::~RSCamPort() { enablePorts(0); }

void RSCamPort::initRegisters() {
    const std::array rows{
        BlockRegisterRow{mWriteRegCamPortConfig,      "AACamPortConfig",      nullptr           },
        BlockRegisterRow{mWriteRegCamPortFullFlavour, "AACamPortFullFlavour", nullptr           },
        BlockRegisterRow{mWriteRegVauCamPortConfig,   "BACamPortConfig",      nullptr           },
        BlockRegisterRow{mWriteRegCamPortRgb,         "AACamPortRgb",         "ABCamPortRgb"    },
        BlockRegisterRow{mWriteRegCamPortLineCam,     "AACamPortLineCam",     "ABCamPortLineCam"},
        BlockRegisterRow{mWriteRegCamPortDualTap,     "AACamPortDualTap",     "ABCamPortDualTap"},
        BlockRegisterRow{mWriteRegCamPortBits,        "AACamPortBits",        "ABCamPortBits"   },
        BlockRegisterRow{mWriteRegCamPortUseDval,     "AACamPortUseDval",     "ABCamPortUseDval"},
        BlockRegisterRow{mWriteRegGateMode,           "AAGateMode",           "ABGateMode"      },
        BlockRegisterRow{mWriteRegOutputFormat,       "AAOutputFormat",       "ABOutputFormat"  },
        BlockRegisterRow{mWriteRegVauCamPortRgb,      "BACamPortRgb",         "BBCamPortRgb"    },
        BlockRegisterRow{mWriteRegVauCamPortLineCam,  "BACamPortLineCam",     "BBCamPortLineCam"},
        BlockRegisterRow{mWriteRegCamEnable,          "AACamPortEnable",      "ABCamPortEnable" },
    };
    initBothPorts(rows);
    enablePorts(1);
    const std::array orderRows{
        BlockRegisterRow{mWriteReg_ReadOutPixelOrder, "AAPixelOrder", "ABPixelOrder"}
    };
    initBothPorts(orderRows);
    const std::array liteRows{
        BlockRegisterRow{mWriteReg_CamPortPoclLite, "AACamPortLite", "ABCamPortLite", kOptional}
    };
    initBothPorts(liteRows);
}

void RSCamPort::enablePorts(unsigned value) {
    // A port that cannot be switched shows in its pictures.
    for (const int handle : mWriteRegCamEnable.handle) writeHandle(handle, value);
}

bool RSCamPort::isPoclLiteAvailable(unsigned int port) const {
    return isPort(port) && mWriteReg_CamPortPoclLite.handle[port] != 0;
}

bool RSCamPort::isColor(unsigned int port) const {
    return mFg_Base->getIsCameraColor(static_cast<int>(port)) != 0 && !mIsBayer;
}

void RSCamPort::updatePixelDepth(unsigned int port) {
    if (mOutputFormat[port] == kColor24 || mOutputFormat[port] == kGray8) {
        mPixelDepth[port] = kEightBits;
    } else if (mAlignment[port] == kLeftAligned) {
        mPixelDepth[port] = kSixteenBits;
    } else if (const InputFormat* row = inputFormat(mCameraLinkCamType[port]); row != nullptr && row->depth != 0) {
        mPixelDepth[port] = row->depth;
    }
}

// ---- Register writes

/// Makes every write, also after one has failed.
/// \return minus the number of failed writes
int RSCamPort::failedWrites(std::span<const Write> writes) {
    int result = FG_OK;
    for (const Write& write : writes) {
        if (writeHandle(write.handle, write.value) != FG_OK) --result;
    }
    return result;
}

/// Derives what the receiver must know from the port's input format; an unknown format leaves most as it was.
void RSCamPort::takeInputFormat(unsigned port) {
    mCamPortFullFlavour = 0;
    mCamPortLite[port] = 0;
    const InputFormat* row = inputFormat(mCameraLinkCamType[port]);
    if (row == nullptr) return;
    mCamPortRgb[port] = row->rgb == kSerialRgb && !isColor(port) ? kGray : row->rgb;
    mCamPortDualTap[port] = row->dualTap;
    mCamPortBits[port] = row->bits;
    mCamPortLite[port] = row->lite;
    mCamPortFullFlavour = row->fullFlavour;
}

int RSCamPort::writeInputFormat(unsigned port) {
    updatePixelDepth(port);
    takeInputFormat(port);
    const unsigned bitsCode = bitsCodeOf(mCamPortBits[port]);
    // Without the flavour the rest means nothing: it is left out, and that is no failure.
    if (writeHandle(mWriteRegCamPortFullFlavour.handle[port], mCamPortFullFlavour) != FG_OK) return FG_OK;
    int result = FG_OK;
    if (isMedium()) {
        result = writeInputFormatMedium(bitsCode);
    } else {
        result = failedWrites(std::array{
            Write{mWriteRegCamPortBits.handle[port],   bitsCode         },
            Write{mWriteRegCamPortRgb.handle[port],    mCamPortRgb[port]},
            Write{mWriteRegVauCamPortRgb.handle[port], mCamPortRgb[port]}
        });
        if (writeHandle(mWriteRegCamPortDualTap.handle[port], mCamPortDualTap[port]) != FG_OK) return result - 1;
    }
    if (!isPoclLiteAvailable(port)) return result;
    return result + failedWrites(std::array{
                        Write{mWriteReg_CamPortPoclLite.handle[port], mCamPortLite[port]}
    });
}

/// One camera on both connectors: both take port 0's colour order and taps.
int RSCamPort::writeInputFormatMedium(unsigned bitsCode) {
    const unsigned rgb = mCamPortRgb[0];
    const unsigned dualTap = mCamPortDualTap[0];
    return failedWrites(std::array{
        Write{mWriteRegCamPortBits.handle[0],    bitsCode},
        Write{mWriteRegCamPortBits.handle[1],    bitsCode},
        Write{mWriteRegCamPortRgb.handle[0],     rgb     },
        Write{mWriteRegCamPortRgb.handle[1],     rgb     },
        Write{mWriteRegVauCamPortRgb.handle[0],  rgb     },
        Write{mWriteRegVauCamPortRgb.handle[1],  rgb     },
        Write{mWriteRegCamPortDualTap.handle[0], dualTap },
        Write{mWriteRegCamPortDualTap.handle[1], dualTap },
    });
}

int RSCamPort::writeOutputFormat(unsigned port) {
    const unsigned isWide = mOutputFormat[port] == kGray16 || mOutputFormat[port] == kColor48 ? 1 : 0;
    if (const int failed = writeHandle(mWriteRegOutputFormat.handle[port], isWide); failed != FG_OK) return failed;
    if (port == 0 && isMedium() && mWriteRegOutputFormat.handle[1] != 0) {
        if (const int failed = writeHandle(mWriteRegOutputFormat.handle[1], isWide); failed != FG_OK) return failed;
    }
    updatePixelDepth(port);
    // The receiver takes a new format up when it is configured anew. That result is the configuration's own.
    std::ignore = updateParameter(port, FG_CAMPORT_CONFIG);
    return FG_OK;
}

int RSCamPort::writeUseDval(unsigned port) {
    const std::array<int, kPorts>& handles = mWriteRegCamPortUseDval.handle;
    if (!isMedium())
        return failedWrites(std::array{
            Write{handles[port], mCamPortUseDval[port]}
        });
    return failedWrites(std::array{
        Write{handles[0], mCamPortUseDval[0]},
        Write{handles[1], mCamPortUseDval[0]}
    });
}

/// The port is held in reset while its configuration changes.
int RSCamPort::writeConfiguration(unsigned port) {
    RSControl& control = *mFg_Base->getController();
    control.writeRegisterReset(port, 1);
    const int result = failedWrites(std::array{
        Write{mWriteRegCamPortConfig.handle[port],    mCamPortConfig},
        Write{mWriteRegVauCamPortConfig.handle[port], mCamPortConfig}
    });
    control.writeRegisterReset(port, 0);
    return result;
}

int RSCamPort::writeCameraType(unsigned port) {
    const int result = failedWrites(std::array{
        Write{mWriteRegCamPortLineCam.handle[port],    mCamPortLineCam[port]},
        Write{mWriteRegVauCamPortLineCam.handle[port], mCamPortLineCam[port]}
    });
    if (mFg_Base->getIsArea(static_cast<int>(port)) == 0) return result;
    return result + failedWrites(std::array{
                        Write{mWriteRegGateMode.handle[port], mGateMode[port]}
    });
}

void RSCamPort::writePixelOrder(unsigned port) {
    writeHandle(mWriteReg_ReadOutPixelOrder.handle[port],
                pixelOrderOf(mComponentMapRed[port], mComponentMapGreen[port], mComponentMapBlue[port]));
}

int RSCamPort::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (parameter) {
        case FG_FORMAT:
            return writeOutputFormat(port);
        case FG_BITALIGNMENT:
            updatePixelDepth(port);
            return FG_OK;
        case FG_USEDVAL:
            return writeUseDval(port);
        case FG_RGB_MAP_RED:
        case FG_RGB_MAP_GREEN:
        case FG_RGB_MAP_BLUE:
            writePixelOrder(port);
            return FG_OK;
        case FG_CAMERA_LINK_CAMTYP:
            return writeInputFormat(port);
        case FG_CAMPORT_CONFIG:
            return writeConfiguration(port);
        case FG_CAMERA_TYPE:
            return writeCameraType(port);
        default:
            return FG_OK;
    }
}

int RSCamPort::updateAllParameters(unsigned int port) {
    for (const int id : kUpdateOrder) {
        if (const int failed = updateParameter(port, id); failed != FG_OK) return failed;
    }
    return FG_OK;
}
