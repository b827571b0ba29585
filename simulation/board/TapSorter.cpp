#include "simulation/board/TapSorter.h"

#include <algorithm>

namespace simulation {

namespace {

struct SortingRow {
    int geometry;
    TapSorter::Values values;
};

// The columns are those of TapSorter::kRegisters. The unchanged geometry has no row: no sorting is needed for it.
constexpr std::array kRows{
    SortingRow{3,  {0x0, 0x11, 0x11, 0xE4E4, 1, 0xEFCDAB89, 0x67452301}},
    SortingRow{30, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xEFCD6745}},
    SortingRow{31, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xDCFE5476}},
    SortingRow{32, {0x0, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},
    SortingRow{33, {0x5, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},
    SortingRow{34, {0x5, 0x33, 0x33, 0xB1B1, 0, 0xEFCD6745, 0xAB892301}},
    SortingRow{35, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xDCFE5476}},
    SortingRow{36, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xFEDC7654, 0xAB892301}},
    SortingRow{37, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xCDEF4567, 0xAB892301}},
    SortingRow{38, {0x0, 0x11, 0x11, 0xE4E4, 0, 0xEFCD6745, 0xAB892301}},
    SortingRow{39, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xCDEF4567, 0xAB892301}},
    SortingRow{40, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xCDEF4567}},
    SortingRow{41, {0x5, 0x30, 0x30, 0xB1E4, 0, 0xDCFE5476, 0xAB892301}},
    SortingRow{42, {0xF, 0x00, 0x00, 0xE4E4, 0, 0xB3A29180, 0xF7E6D5C4}},
    SortingRow{43, {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x7F6E5D4C, 0x3B2A1908}},
    SortingRow{44, {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xB3A29180, 0x4C5D6E7F}},
    SortingRow{45, {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xC4D5E6F7, 0x3B2A1908}},
    SortingRow{46, {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x3B2A9180, 0x7F6ED5C4}},
    SortingRow{47, {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x4C5DE6F7, 0x0819A2B3}},
    SortingRow{48, {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x08192A3B, 0x4C5D6E7F}},
    SortingRow{49, {0xF, 0x00, 0x00, 0xE4E4, 0, 0xC4D5E6F7, 0x8091A2B3}},
    SortingRow{50, {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x08192A3B, 0xF7E6D5C4}},
    SortingRow{51, {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x7F6E5D4C, 0x8091A2B3}},
};

}  // namespace

const ReadoutGeometry& TapSorter::geometryFor(const Values& values) {
    const auto row =
        std::find_if(kRows.begin(), kRows.end(), [&](const SortingRow& known) { return known.values == values; });
    const ReadoutGeometry* const geometry = row == kRows.end() ? nullptr : findGeometry(row->geometry);
    return geometry == nullptr ? unchangedGeometry() : *geometry;
}

const LineOrder& TapSorter::order(const Values& values, const ReadoutGeometry& sent, uint32_t width) {
    if (mSent == &sent && mWidth == width && mValues == values) return mOrder;
    mOrder = deliveryOrder(sent, width).then(deliveryOrder(geometryFor(values), width).inverse());
    mValues = values;
    mSent = &sent;
    mWidth = width;
    return mOrder;
}

}  // namespace simulation
