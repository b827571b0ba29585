#include "StandardApplets/grabber_basis/PSFx4/PSImageSelector.h"

#include <array>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr unsigned kFullWidthBits = 32;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_IMG_SELECT_PERIOD, TYPE_INT, "FG_IMG_SELECT_PERIOD", "Image select period", nullptr,
                 "Select the length of an image sequence. Only a single image of the sequence is grabbed."},
    ParameterRow{FG_IMG_SELECT, TYPE_INT, "FG_IMG_SELECT", "Image select", nullptr,
                 "Defines which image of the image sequence is grabbed."},
};
constexpr std::array kFlags{
    FlagRow{FG_IMG_SELECT_PERIOD, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_IMG_SELECT, kReadWriteAlways, 1, 1, 1},
};
// clang-format on
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlags));

constexpr std::array kGroup{FG_IMG_SELECT_PERIOD, FG_IMG_SELECT};

}  // namespace

PSImageSelector::PSImageSelector(Fg_StdMaster* FG_base) : RSImageSelector(FG_base) {
    initRegisters();
    createParameters(*this, kParameters);
}

int PSImageSelector::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(id);
    if (side == nullptr) return FG_INVALID_ARGUMENT;
    putValue(val, (this->*side->get)(port));
    return FG_OK;
}

int PSImageSelector::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(id);
    if (side == nullptr) return FG_INVALID_ARGUMENT;
    return (this->*side->set)(port, takeValue<unsigned>(val));
}

/// \return the largest value that port 0's register can hold
unsigned PSImageSelector::largestContent(const BlockRegister& reg) {
    int error = FG_OK;
    const auto bits = static_cast<unsigned>(mBoard->getRegisterBitRange(reg.handle[0], &error));
    return bits >= kFullWidthBits ? ~0u : (1u << bits) - 1;
}

void PSImageSelector::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    const unsigned largestPeriod = largestContent(mWriteReg_ImgSelectPeriod);
    // The register holds the period minus one; a period of 2 to the power 32 has no 32-bit number.
    const unsigned period = largestPeriod == ~0u ? largestPeriod : largestPeriod + 1;
    const unsigned index = largestContent(mWriteReg_ImgSelect);
    header->setLimits(FG_IMG_SELECT_PERIOD, p, 1, static_cast<int>(period), 1, 1, updateDefault);
    header->setLimits(FG_IMG_SELECT, p, 0, static_cast<int>(index), 1, 0, updateDefault);
}

void PSImageSelector::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSImageSelector::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSImageSelector::setRegisterInfoTree(unsigned int port) {
    publishGroup(*header, port, nullptr, "Image Selector", kGroup);
}

const char* PSImageSelector::getDocModuleURL(int /*id*/) {
    return "feature_blocks/PSImageSelector/PSImageSelector.html";
}
