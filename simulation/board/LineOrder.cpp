#include "simulation/board/LineOrder.h"

#include <algorithm>

namespace simulation {

LineOrder::LineOrder(std::vector<uint32_t> columns) {
    uint32_t place = 0;
    const bool isNatural =
        std::all_of(columns.begin(), columns.end(), [&](uint32_t column) { return column == place++; });
    if (!isNatural) mColumns = std::move(columns);
}

LineOrder LineOrder::inverse() const {
    std::vector<uint32_t> columns(mColumns.size());
    for (uint32_t place = 0; place < mColumns.size(); ++place) columns[mColumns[place]] = place;
    return LineOrder(std::move(columns));
}

LineOrder LineOrder::then(const LineOrder& next) const {
    if (isNatural()) return next;
    if (next.isNatural()) return *this;
    std::vector<uint32_t> columns(mColumns.size());
    std::transform(next.mColumns.begin(), next.mColumns.end(), columns.begin(),
                   [this](uint32_t column) { return mColumns[column]; });
    return LineOrder(std::move(columns));
}

void LineOrder::copy(const uint8_t* line, size_t first, std::span<uint8_t> target) const {
    if (isNatural()) {
        std::copy_n(line + first, target.size(), target.begin());
        return;
    }
    const uint32_t* const columns = mColumns.data() + first;
    for (size_t i = 0; i < target.size(); ++i) target[i] = line[columns[i]];
}

}  // namespace simulation
