#include "StandardApplets/grabber_basis/PSFx4/PSCamPort.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kColorCategory = 26;
constexpr unsigned kAreaGateMode = 3;
constexpr unsigned kParallelRgbFormat = 500;
constexpr int kRefreshValue = 0;  // mode of a dependency
constexpr int kLine = 1;
constexpr int kArea = 0;
constexpr int kFull = 2;
constexpr int kRightAligned = 0;
constexpr int kYes = 1;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_CAMERA_TYPE, TYPE_ENUM, "FG_CAMERA_TYPE", "Camera type", nullptr,
                 "Type of the camera (Line/Area)."},
    ParameterRow{FG_CAMPORT_CONFIG, TYPE_ENUM, "FG_CAMPORT_CONFIG", "Camport config.", nullptr,
                 "Camport config. (Dual/Medium)"},
    ParameterRow{FG_USEDVAL, TYPE_ENUM, "FG_USEDVAL", "Use DVAL", nullptr,
                 "Use CameraLink's Dval signal or ignore it."},
    ParameterRow{FG_FORMAT, TYPE_ENUM, "FG_FORMAT", "Output Format", "[bit]", "Pixel format of the output image."},
    ParameterRow{FG_PIXELDEPTH, TYPE_INT, "FG_PIXELDEPTH", "Pixel Depth", "[bit]",
                 "Information about the number of valid bits per component."},
    ParameterRow{FG_CAMERA_LINK_CAMTYP, TYPE_ENUM, "FG_CAMERA_LINK_CAMTYP", "Input Format", nullptr,
                 "Compatibility parameter."},
    ParameterRow{FG_BITALIGNMENT, TYPE_ENUM, "FG_BITALIGNMENT", "Alignment", nullptr,
                 "Defines if the output data are right aligned or left aligned."},
};
constexpr std::array kRgbMapParameters{
    ParameterRow{FG_RGB_MAP_RED, TYPE_ENUM, "FG_RGB_MAP_RED", "RGB Mapping Red", nullptr,
                 "Defines the position of the red pixel in serial rgb mode."},
    ParameterRow{FG_RGB_MAP_GREEN, TYPE_ENUM, "FG_RGB_MAP_GREEN", "RGB Mapping Green", nullptr,
                 "Defines the position of the green pixel in serial rgb mode."},
    ParameterRow{FG_RGB_MAP_BLUE, TYPE_ENUM, "FG_RGB_MAP_BLUE", "RGB Mapping Blue", nullptr,
                 "Defines the position of the blue pixel in serial rgb mode."},
};
constexpr std::array kFlags{
    FlagRow{FG_CAMERA_TYPE, kReadOnly, 1, 0, 1},
    FlagRow{FG_CAMPORT_CONFIG, kReadOnly, 1, 0, 1},
    FlagRow{FG_FORMAT, kReadWrite, 1, 1, 1},
    FlagRow{FG_USEDVAL, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_CAMERA_LINK_CAMTYP, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_BITALIGNMENT, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_PIXELDEPTH, kReadOnly, 1, 1, 0},
};

constexpr std::array kCameraTypes{EnumField{"Line", 1, "Line"}, EnumField{"Area", 0, "Area"}};
constexpr std::array kConfigurations{
    EnumField{"Full", 2, "Full"}, EnumField{"Medium", 1, "Medium"}, EnumField{"Dual", 0, "Dual"},
};
constexpr std::array kYesOrNo{EnumField{"Yes", 1, "FG_YES"}, EnumField{"No", 0, "FG_NO"}};
constexpr std::array kAlignments{
    EnumField{"Left aligned", 1, "FG_LEFT_ALIGNED"}, EnumField{"Right aligned", 0, "FG_RIGHT_ALIGNED"},
};
constexpr std::array kPixelPositions{
    EnumField{"Pixel0", 0, "FG_MAP_PIXEL0"}, EnumField{"Pixel1", 1, "FG_MAP_PIXEL1"},
    EnumField{"Pixel2", 2, "FG_MAP_PIXEL2"},
};

constexpr std::array kColorFormats{EnumField{"24bit", 2, "FG_COL24"}, EnumField{"48bit", 6, "FG_COL48"}};
constexpr std::array kFullFormats{EnumField{"8bit", 3, "FG_GRAY"}};
constexpr std::array kGrayFormats{EnumField{"8bit", 3, "FG_GRAY"}, EnumField{"16bit", 1, "FG_GRAY16"}};

constexpr std::array kFullInputs{
    EnumField{"8 Bit Full 8", 308, "FG_CL_8BIT_FULL_8"},
    EnumField{"8 Bit Full 10(Extended)", 310, "FG_CL_8BIT_FULL_10"},
};
constexpr std::array kMediumInputs{
    EnumField{"8 Bit Medium", 208, "FG_CL_MEDIUM_8_BIT"},
    EnumField{"10 Bit Medium", 210, "FG_CL_MEDIUM_10_BIT"},
    EnumField{"12 Bit Medium", 212, "FG_CL_MEDIUM_12_BIT"},
};
constexpr std::array kMediumColorInputs{
    EnumField{"30bit RGB Medium", 216, "FG_CL_MEDIUM_RGB_30"},
    EnumField{"36bit RGB Medium", 218, "FG_CL_MEDIUM_RGB_36"},
};
constexpr std::array kBaseColorInputs{
    EnumField{"1x24bit RGB (Parallel 8bit)", 500, "FG_CL_RGB"},
    EnumField{"3x 8bit RGB (Serial 8bit Single Tap)", 8, "FG_CL_SINGLETAP_8_BIT"},
    EnumField{"3x10bit RGB (Serial 10bit Single Tap)", 10, "FG_CL_SINGLETAP_10_BIT"},
    EnumField{"3x12bit RGB (Serial 12bit Single Tap)", 12, "FG_CL_SINGLETAP_12_BIT"},
    EnumField{"3x14bit RGB (Serial 14bit Single Tap)", 14, "FG_CL_SINGLETAP_14_BIT"},
    EnumField{"3x16bit RGB (Serial 16bit Single Tap)", 16, "FG_CL_SINGLETAP_16_BIT"},
    EnumField{"2x16bit RGB (Serial 8bit Dual Tap)", 108, "FG_CL_DUALTAP_8_BIT"},
    EnumField{"2x20bit RGB (Serial 10bit Dual Tap)", 110, "FG_CL_DUALTAP_10_BIT"},
    EnumField{"2x24bit RGB (Serial 12bit Dual Tap)", 112, "FG_CL_DUALTAP_12_BIT"},
};
/// The last kLiteInputs of them need the lite register.
constexpr std::array kBaseGrayInputs{
    EnumField{"8 Bit Single Tap", 8, "FG_CL_SINGLETAP_8_BIT"},
    EnumField{"10 Bit Single Tap", 10, "FG_CL_SINGLETAP_10_BIT"},
    EnumField{"12 Bit Single Tap", 12, "FG_CL_SINGLETAP_12_BIT"},
    EnumField{"14 Bit Single Tap", 14, "FG_CL_SINGLETAP_14_BIT"},
    EnumField{"16 Bit Single Tap", 16, "FG_CL_SINGLETAP_16_BIT"},
    EnumField{"8 Bit Dual Tap", 108, "FG_CL_DUALTAP_8_BIT"},
    EnumField{"10 Bit Dual Tap", 110, "FG_CL_DUALTAP_10_BIT"},
    EnumField{"12 Bit Dual Tap", 112, "FG_CL_DUALTAP_12_BIT"},
    EnumField{"8 Bit Pocl Lite", 130, "FG_CL_LITE_8_BIT"},
    EnumField{"10 Bit Pocl Lite", 140, "FG_CL_LITE_10_BIT"},
};
constexpr size_t kLiteInputs = 2;
// clang-format on
static_assert(idsAreUnique(kParameters) && idsAreUnique(kRgbMapParameters) && idsAreUnique(kFlags));
static_assert(kFlags.size() == kParameters.size());

constexpr std::array kCameraLinkGroup{FG_CAMERA_LINK_CAMTYP, FG_CAMERA_TYPE, FG_CAMPORT_CONFIG, FG_USEDVAL};
constexpr std::array kOutputGroup{FG_FORMAT, FG_PIXELDEPTH, FG_BITALIGNMENT};
constexpr std::array kRgbMapGroup{FG_RGB_MAP_RED, FG_RGB_MAP_GREEN, FG_RGB_MAP_BLUE};

/// What a change of the port's set-up means for other modules: they rewrite all their registers.
struct Dependency {
    int id;
    int dependent;
};
constexpr std::array kDependencies{
    Dependency{FG_CAMPORT_CONFIG, FG_WIDTH    },
    Dependency{FG_FORMAT,         FG_WIDTH    },
    Dependency{FG_CAMPORT_CONFIG, FG_GEN_WIDTH},
};

/// Whether an output format carries colour. Other formats leave the master's description as it is.
struct FormatColor {
    unsigned format;
    int isColor;
};
constexpr std::array kFormatColors{
    FormatColor{2, 1},
    FormatColor{6, 1},
    FormatColor{1, 0},
    FormatColor{3, 0}
};

}  // namespace

PSCamPort::PSCamPort(Fg_StdMaster* FG_base, bool isCamPortArea, bool isCamPortMedium, bool isCamPortColor,
                     bool isCamPortBayer, bool isCamPortFull)
    : RSCamPort(FG_base),
      m_MediumCamport(isCamPortMedium),
      m_ColorCamport(isCamPortColor),
      m_AreaCamport(isCamPortArea) {
    mIsBayer = isCamPortBayer;
    mIsCamPortFull = isCamPortFull;
    mFg_Base->setIsMedium(m_MediumCamport || mIsCamPortFull);
    for (int port = 0; isPort(port); ++port) {
        mFg_Base->setIsCameraColor(m_ColorCamport ? 1 : 0, port);
        mFg_Base->setIsArea(m_AreaCamport ? 1 : 0, port);
    }
    initRegisters();
    PSCamPort::createParameters();
    for (const Dependency& row : kDependencies) {
        header->addUpdateDependency(kRefreshValue, row.id, row.dependent, true);
    }
}

void PSCamPort::createParameters() {
    ::createParameters(*this, kParameters);
    if (isSerialRgbPossible(0)) ::createParameters(*this, kRgbMapParameters);
}

bool PSCamPort::isSerialRgbPossible(unsigned port) const { return !isMedium() && isColor(port); }

/// \return whether the parameters for serial RGB exist, which was decided when they were created
bool PSCamPort::hasRgbMapping() const { return header->searchParameterById(FG_RGB_MAP_RED) != nullptr; }

// ---- Values

const std::array<PSCamPort::Cache, 9> PSCamPort::kCaches{
    {
     {FG_CAMERA_TYPE, &PSCamPort::mCamPortLineCam},
     {FG_USEDVAL, &PSCamPort::mCamPortUseDval},
     {FG_FORMAT, &PSCamPort::mOutputFormat},
     {FG_PIXELDEPTH, &PSCamPort::mPixelDepth},
     {FG_CAMERA_LINK_CAMTYP, &PSCamPort::mCameraLinkCamType},
     {FG_BITALIGNMENT, &PSCamPort::mAlignment},
     {FG_RGB_MAP_RED, &PSCamPort::mComponentMapRed},
     {FG_RGB_MAP_GREEN, &PSCamPort::mComponentMapGreen},
     {FG_RGB_MAP_BLUE, &PSCamPort::mComponentMapBlue},
     }
};

unsigned* PSCamPort::cacheOf(int id, unsigned port) {
    if (id == FG_CAMPORT_CONFIG) return &mCamPortConfig;
    const auto* found = std::find_if(kCaches.begin(), kCaches.end(), [id](const Cache& row) { return row.id == id; });
    return found == kCaches.end() ? nullptr : &(this->*found->values)[port];
}

int PSCamPort::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const unsigned* cached = cacheOf(id, port);
    if (cached == nullptr) return FG_INVALID_ARGUMENT;
    putValue(val, *cached);
    return FG_OK;
}

int PSCamPort::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    unsigned* cached = cacheOf(id, port);
    if (cached == nullptr) return FG_INVALID_ARGUMENT;
    *cached = takeValue<unsigned>(val);
    tellMaster(id, *cached, port);
    // What is offered follows the configuration.
    setLimits(port, false);
    setFlags(port);
    return FG_OK;
}

/// Hands on what a stored value says about the camera.
void PSCamPort::tellMaster(int id, unsigned value, unsigned port) {
    const int p = static_cast<int>(port);
    switch (id) {
        case FG_FORMAT:
            mFg_Base->setActiveFormat(p, static_cast<int>(value));
            for (const FormatColor& row : kFormatColors) {
                if (row.format == value) mFg_Base->setIsCameraColor(row.isColor, p);
            }
            applyCategoryRule(port);
            break;
        case FG_CAMERA_LINK_CAMTYP:
            applyCategoryRule(port);
            break;
        case FG_CAMPORT_CONFIG:
            mFg_Base->setIsMedium(value != 0);
            break;
        case FG_CAMERA_TYPE:
            mFg_Base->setIsArea(value == 0 ? 1 : 0, p);
            mGateMode[port] = kAreaGateMode;
            break;
        default:
            break;
    }
}

/// A colour camera in the base configuration has a category, that is units of the window, of its own.
void PSCamPort::applyCategoryRule(unsigned port) {
    if (isSerialRgbPossible(port)) mFg_Base->setCameraCategory(kColorCategory, static_cast<int>(port));
}

int PSCamPort::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const bool decidesInputFormats = parameter == FG_FORMAT || parameter == FG_CAMPORT_CONFIG;
    if (decidesInputFormats && header->checkParameterById(FG_CAMERA_LINK_CAMTYP, &mCameraLinkCamType[port], port,
                                                          FG_PARAM_TYPE_UINT32_T) != FG_OK) {
        std::ignore = RSCamPort::updateParameter(port, FG_CAMERA_LINK_CAMTYP);
    }
    return RSCamPort::updateParameter(port, parameter);
}

// ---- Descriptions

PSCamPort::Choice PSCamPort::inputFormats(unsigned port) const {
    if (isMedium()) {
        if (mIsCamPortFull) return {kFullInputs, 308};
        return isColor(port) ? Choice{kMediumColorInputs, 216} : Choice{kMediumInputs, 208};
    }
    if (isColor(port)) return {kBaseColorInputs, static_cast<int>(kParallelRgbFormat)};
    const bool isColorPort = mFg_Base->getIsCameraColor(static_cast<int>(port)) != 0;
    const std::span<const EnumField> all = kBaseGrayInputs;
    return {isPoclLiteAvailable(port) && !isColorPort ? all : all.first(all.size() - kLiteInputs), 8};
}

PSCamPort::Choice PSCamPort::outputFormats(unsigned port) const {
    if (mFg_Base->getIsCameraColor(static_cast<int>(port)) != 0) return {kColorFormats, 2};
    if (isMedium() && mIsCamPortFull) return {kFullFormats, 3};
    return {kGrayFormats, 3};
}

void PSCamPort::limitRgbMapping(unsigned port, bool updateDefault) {
    const int p = static_cast<int>(port);
    int position = 0;
    for (const int id : kRgbMapGroup) {
        header->setLimits(id, p, kPixelPositions.data(), static_cast<int>(kPixelPositions.size()), position++,
                          updateDefault);
    }
}

void PSCamPort::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    const auto limit = [&](int id, const Choice& choice) {
        header->setLimits(id, p, choice.entries.data(), static_cast<int>(choice.entries.size()), choice.defaultValue,
                          updateDefault);
    };
    // A default that is written changes what follows, so each choice is made when its turn comes.
    limit(FG_CAMERA_LINK_CAMTYP, inputFormats(port));
    if (isSerialRgbPossible(port)) limitRgbMapping(port, updateDefault);
    limit(FG_CAMERA_TYPE, {kCameraTypes, mFg_Base->getIsArea(p) == 0 ? kLine : kArea});
    const int mediumFlag = isMedium() ? 1 : 0;
    limit(FG_CAMPORT_CONFIG, {kConfigurations, mIsCamPortFull ? kFull : mediumFlag});
    header->setLimits(FG_PIXELDEPTH, p, 0, 128, 1, 8, false);
    limit(FG_USEDVAL, {kYesOrNo, kYes});
    limit(FG_FORMAT, outputFormats(port));
    limit(FG_BITALIGNMENT, {kAlignments, kRightAligned});
}

void PSCamPort::setDescriptions() {
    publishDescriptions(*header, kParameters);
    if (hasRgbMapping()) publishDescriptions(*header, kRgbMapParameters);
}

void PSCamPort::setFlags(unsigned int port) {
    publishFlags(*header, port, kFlags);
    if (!hasRgbMapping() || mFg_Base->getIsCameraColor(static_cast<int>(port)) == 0) return;
    // Parallel RGB needs no order.
    const int access = mCameraLinkCamType[port] == kParallelRgbFormat ? kReadOnly : kReadWriteAlways;
    for (const int id : kRgbMapGroup) header->setFlags(id, static_cast<int>(port), access, 1, 1, 1);
}

void PSCamPort::setRegisterInfoTree(unsigned int port) {
    RegisterInfo* cameraLink = publishGroup(*header, port, nullptr, "CameraLink", kCameraLinkGroup);
    publishGroup(*header, port, nullptr, "Output Format", kOutputGroup);
    if (hasRgbMapping() && isSerialRgbPossible(port)) {
        publishGroup(*header, port, cameraLink, "Serial RGB Mapping", kRgbMapGroup);
    }
}

const char* PSCamPort::getDocModuleURL(int /*id*/) {
    const bool isColorPort = mFg_Base->getIsCameraColor(0) != 0;
    if (mIsCamPortFull) return "feature_blocks/PSCameraLink/PSCameraLink_FGray8.html";
    if (m_MediumCamport) {
        return isColorPort ? "feature_blocks/PSCameraLink/PSCameraLink_MRGB36.html"
                           : "feature_blocks/PSCameraLink/PSCameraLink_MGray16.html";
    }
    return isColor(0) ? "feature_blocks/PSCameraLink/PSCameraLink_RGB48.html"
                      : "feature_blocks/PSCameraLink/PSCameraLink_Gray16.html";
}
