#pragma once

#include <string>
#include <vector>

#include "Terminal.h"

namespace quillon::tool {

/// Rows of text, printed with aligned columns.
class Table {
public:
    /// Adds a row; a row of a single cell is a heading of its own and takes no part in the alignment.
    void add(std::vector<std::string> cells) { mRows.push_back(std::move(cells)); }

    /// \return all rows, each ended by a line feed and without blanks at its end
    [[nodiscard]] std::string text() const { return text({}); }
    /// \return the same, with bold headings, and with last cells broken at blanks where they would pass the right edge
    [[nodiscard]] std::string text(const OutputStyle& style) const;

private:
    [[nodiscard]] std::vector<size_t> widths() const;

    std::vector<std::vector<std::string>> mRows;
};

}  // namespace quillon::tool
