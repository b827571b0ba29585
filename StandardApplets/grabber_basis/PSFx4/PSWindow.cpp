#include "StandardApplets/grabber_basis/PSFx4/PSWindow.h"

#include <algorithm>
#include <array>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_ImageControl.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kTakeStepFromMaster = -1;
constexpr int kMaxLines = 65535;
constexpr unsigned kFullWidthBits = 32;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_WIDTH, TYPE_INT, "FG_WIDTH", "Width", "[pixels]", "Image width of the acquisition window."},
    ParameterRow{FG_HEIGHT, TYPE_INT, "FG_HEIGHT", "Height", "[pixels]", "Image height of the acquisition window."},
    ParameterRow{FG_XOFFSET, TYPE_INT, "FG_XOFFSET", "XOffset", "[pixels]", "Horizontal offset of the image."},
    ParameterRow{FG_YOFFSET, TYPE_INT, "FG_YOFFSET", "YOffset", "[pixels]", "Vertical offset of the image."},
};
constexpr std::array kFlags{
    FlagRow{FG_WIDTH, kReadWrite, 1, 1, 1},
    FlagRow{FG_HEIGHT, kReadWrite, 1, 1, 1},
    FlagRow{FG_XOFFSET, kReadWrite, 1, 1, 1},
    FlagRow{FG_YOFFSET, kReadWrite, 1, 1, 1},
};
// clang-format on
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlags));

constexpr std::array kGroup{FG_WIDTH, FG_HEIGHT, FG_XOFFSET, FG_YOFFSET};

}  // namespace

PSWindow::PSWindow(Fg_StdMaster* FG_base, int maxW, int stdWidth, int stdHeight, int stdModuloWidth)
    : RSWindow(FG_base),
      maxWidth(maxW),
      defaultWidth(stdWidth),
      defaultHeight(stdHeight),
      mModuloWidth(stdModuloWidth) {
    initRegisters();
    createParameters(*this, kParameters);
}

int PSWindow::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(id);
    if (side == nullptr) return FG_INVALID_ARGUMENT;
    putValue(val, (this->*side->cache)[port]);
    return FG_OK;
}

int PSWindow::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(id);
    if (side == nullptr) return FG_INVALID_ARGUMENT;
    (this->*side->cache)[isMedium() ? 0 : port] = takeValue<unsigned>(val);
    return FG_OK;
}

int PSWindow::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (parameter == FG_WIDTH || parameter == FG_HEIGHT) {
        mFg_Base->getImageControl()->setImageSize(port, size_t{mWidth[port]} * mHeight[port]);
    }
    return RSWindow::updateParameter(port, parameter);
}

/// \return the largest width in pixels that the register and the applet allow
int PSWindow::widthMaximum(int unitPixels) {
    int error = FG_OK;
    const auto bits = static_cast<unsigned>(mBoard->getRegisterBitRange(mWriteReg_AreaWidth.handle[0], &error));
    if (error != FG_OK || maxWidth < 0) return maxWidth;
    const int64_t units = bits >= kFullWidthBits ? int64_t{UINT32_MAX} : int64_t{1} << bits;
    return static_cast<int>(std::min<int64_t>(units * unitPixels, maxWidth));
}

void PSWindow::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    mFg_Base->calculateImageScalingFactor(p);
    const int unitLines = mFg_Base->getDivFactorHeight(p);
    const int unitPixels = mFg_Base->getDivFactor(p);
    if (mModuloWidth == kTakeStepFromMaster) mModuloWidth = unitPixels;
    const int largest = widthMaximum(unitPixels);
    header->setLimits(FG_WIDTH, p, 2 * mModuloWidth, largest, mModuloWidth, defaultWidth, updateDefault);
    header->setLimits(FG_HEIGHT, p, unitLines, kMaxLines, unitLines, defaultHeight, updateDefault);
    header->setLimits(FG_XOFFSET, p, 0, largest, mModuloWidth, 0, updateDefault);
    header->setLimits(FG_YOFFSET, p, 0, kMaxLines, unitLines, 0, updateDefault);
}

void PSWindow::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSWindow::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSWindow::setRegisterInfoTree(unsigned int port) { publishGroup(*header, port, nullptr, "ROI", kGroup); }

const char* PSWindow::getDocModuleURL(int /*id*/) { return "feature_blocks/PSWindow/PSWindow.html"; }
