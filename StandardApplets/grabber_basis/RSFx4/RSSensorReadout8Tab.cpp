#include "StandardApplets/grabber_basis/RSFx4/RSSensorReadout8Tab.h"

#include <algorithm>

#include "fabrix/parameter_ids.h"

namespace {

/// Register values of a readout mode, in the order of kParts: tap number, tap direction, mirror, tap order, insertion
/// bypass, sorting schema A and B. The two schemata are sixteen 4-bit places, the lowest nibble of A first.
struct ModeRow {
    unsigned mode;
    std::array<uint32_t, 7> values;
};

constexpr size_t kTapDirection = 1;
constexpr size_t kReadOutMirror = 2;
constexpr size_t kSchemaA = 5;
constexpr size_t kSchemaB = 6;

// clang-format off
constexpr std::array kModes{
    ModeRow{0, {0x0, 0x00, 0x00, 0xE4E4, 1, 0x76543210, 0xFEDCBA98}},  // SMODE_UNCHANGED
    ModeRow{3, {0x0, 0x11, 0x11, 0xE4E4, 1, 0xEFCDAB89, 0x67452301}},  // SMODE_REVERSE
    ModeRow{30, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xEFCD6745}},  // SMODE_TAB8_0
    ModeRow{31, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xDCFE5476}},  // SMODE_TAB8_1
    ModeRow{32, {0x0, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},  // SMODE_TAB8_2
    ModeRow{33, {0x5, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},  // SMODE_TAB8_3
    ModeRow{34, {0x5, 0x33, 0x33, 0xB1B1, 0, 0xEFCD6745, 0xAB892301}},  // SMODE_TAB8_4
    ModeRow{35, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xDCFE5476}},  // SMODE_TAB8_5
    ModeRow{36, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xFEDC7654, 0xAB892301}},  // SMODE_TAB8_6
    ModeRow{37, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xCDEF4567, 0xAB892301}},  // SMODE_TAB8_7
    ModeRow{38, {0x0, 0x11, 0x11, 0xE4E4, 0, 0xEFCD6745, 0xAB892301}},  // SMODE_TAB8_8
    ModeRow{39, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xCDEF4567, 0xAB892301}},  // SMODE_TAB8_9
    ModeRow{40, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xCDEF4567}},  // SMODE_TAB8_10
    ModeRow{41, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xDCFE5476, 0xAB892301}},  // SMODE_TAB8_11
    ModeRow{42, {0xF, 0x00, 0x00, 0xE4E4, 0, 0xB3A29180, 0xF7E6D5C4}},  // SMODE_TAB8_12
    ModeRow{43, {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x7F6E5D4C, 0x3B2A1908}},  // SMODE_TAB8_13
    ModeRow{44, {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xB3A29180, 0x4C5D6E7F}},  // SMODE_TAB8_14
    ModeRow{45, {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xC4D5E6F7, 0x3B2A1908}},  // SMODE_TAB8_15
    ModeRow{46, {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x3B2A9180, 0x7F6ED5C4}},  // SMODE_TAB8_16
    ModeRow{47, {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x4C5DE6F7, 0x0819A2B3}},  // SMODE_TAB8_17
    ModeRow{48, {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x08192A3B, 0x4C5D6E7F}},  // SMODE_TAB8_18
    ModeRow{49, {0xF, 0x00, 0x00, 0xE4E4, 0, 0xC4D5E6F7, 0x8091A2B3}},  // SMODE_TAB8_19
    ModeRow{50, {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x08192A3B, 0xF7E6D5C4}},  // SMODE_TAB8_20
    ModeRow{51, {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x7F6E5D4C, 0x8091A2B3}},  // SMODE_TAB8_21
};
// clang-format on

/// \return whether the schemata of a mode name each of the sixteen places once: no pixel is lost, none doubled
constexpr bool isPermutation(const ModeRow& row) {
    const uint64_t schemata = uint64_t{row.values[kSchemaB]} << 32 | row.values[kSchemaA];
    unsigned seen = 0;
    for (unsigned shift = 0; shift < 64; shift += 4) seen |= 1u << (schemata >> shift & 0xF);
    return seen == 0xFFFF;
}

constexpr bool mirrorFollowsDirection(const ModeRow& row) {
    return row.values[kReadOutMirror] == row.values[kTapDirection];
}

constexpr bool modesAscend(const ModeRow& row, const ModeRow& next) { return row.mode < next.mode; }

static_assert(std::all_of(kModes.begin(), kModes.end(), isPermutation));
static_assert(std::all_of(kModes.begin(), kModes.end(), mirrorFollowsDirection));
static_assert(std::is_sorted(kModes.begin(), kModes.end(), modesAscend));

/// \return the row of a mode, the first one for a mode without a row
const ModeRow& rowOf(unsigned mode) {
    const auto* found = std::find_if(kModes.begin(), kModes.end(), [mode](const ModeRow& r) { return r.mode == mode; });
    return found == kModes.end() ? kModes.front() : *found;
}

}  // namespace

// clang-format off
const std::array<RSSensorReadout8Tab::BlockPart, 7> RSSensorReadout8Tab::kParts{{
    {&RSSensorReadout8Tab::mWriteReg_TapNumber, &RSSensorReadout8Tab::mTapNumber, "TapNumber"},
    {&RSSensorReadout8Tab::mWriteReg_TapDirection, &RSSensorReadout8Tab::mTapDirection, "TapDirection"},
    {&RSSensorReadout8Tab::mWriteReg_ReadOutMirror, &RSSensorReadout8Tab::mReadOutMirror, "ReadOutMirror"},
    {&RSSensorReadout8Tab::mWriteReg_ReadOutTapOrder, &RSSensorReadout8Tab::mReadOutTapOrder, "ReadOutTapOrder"},
    {&RSSensorReadout8Tab::mWriteReg_InsertionBypass, &RSSensorReadout8Tab::mInsertionBypass, "InsertionBypass"},
    {&RSSensorReadout8Tab::mWriteReg_TapSortingSchemaA, &RSSensorReadout8Tab::mTapSortingSchemaA, "TapSortingSchemaA"},
    {&RSSensorReadout8Tab::mWriteReg_TapSortingSchemaB, &RSSensorReadout8Tab::mTapSortingSchemaB, "TapSortingSchemaB"},
}};
// clang-format on

RSSensorReadout8Tab::RSSensorReadout8Tab(Fg_StdMaster* master, int taps) : RSMaster(master), nTap(taps) {}

void RSSensorReadout8Tab::initRegisters() {
    for (const BlockPart& part : kParts) {
        const std::array rows{
            BlockRegisterRow{this->*part.reg, part.name, nullptr}
        };
        initBlockRegisters(rows);
    }
}

unsigned int RSSensorReadout8Tab::getReadOutMode(unsigned int port) const {
    return isPort(port) ? mReadOutMode[port] : 0;
}

int RSSensorReadout8Tab::setReadOutMode(unsigned int port, unsigned int value) {
    if (!isPort(port)) return FG_INVALID_PORT;
    mReadOutMode[port] = value;
    return FG_OK;
}

int RSSensorReadout8Tab::writeRegisterReadOutMode(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const ModeRow& row = rowOf(mReadOutMode[port]);
    int sum = FG_OK;
    for (size_t i = 0; i < kParts.size(); ++i) {
        (this->*kParts[i].copy)[port] = row.values[i];
        sum += writeHandle((this->*kParts[i].reg).handle[port], row.values[i]);
    }
    return sum;
}

int RSSensorReadout8Tab::updateParameter(unsigned int port, int parameter) {
    return parameter == FG_SENSORREADOUT ? writeRegisterReadOutMode(port) : FG_ERROR;
}

int RSSensorReadout8Tab::updateAllParameters(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    return updateParameter(port, FG_SENSORREADOUT) < 0 ? FG_ERROR : FG_OK;
}
