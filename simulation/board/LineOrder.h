#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulation {

/// An order of the pixels of a line: place i of the line shows the pixel that was at place `columns[i]`. Without
/// columns every pixel stays where it is, whatever the width.
class LineOrder {
public:
    LineOrder() = default;

    /// \param columns every number from 0 to their count - 1 exactly once.
    explicit LineOrder(std::vector<uint32_t> columns);

    [[nodiscard]] bool isNatural() const { return mColumns.empty(); }

    /// The order that takes this one back.
    [[nodiscard]] LineOrder inverse() const;

    /// This order and then \p next, as one. Both are natural or of the same width.
    [[nodiscard]] LineOrder then(const LineOrder& next) const;

    /// Writes the places \p first and following of the reordered \p line to \p target; all lie on the line.
    void copy(const uint8_t* line, size_t first, std::span<uint8_t> target) const;

private:
    std::vector<uint32_t> mColumns;  // empty where it would be 0, 1, 2 and so on
};

}  // namespace simulation
