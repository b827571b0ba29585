#include "Table.h"

#include <algorithm>
#include <string_view>

namespace quillon::tool {

namespace {

constexpr size_t kColumnGap = 2;
/// A last column narrower than this goes below its row, where it has more room.
constexpr size_t kNarrowest = 24;
constexpr size_t kIndentBelow = 6;
constexpr const char* kBold = "\033[1m";
constexpr const char* kPlain = "\033[0m";

/// \return the columns that a text takes: bytes that continue a UTF-8 character take none
size_t columnsOf(std::string_view text) {
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

/// Breaks a cell that begins at column \p indent where it would pass column \p width.
std::string broken(std::string_view cell, size_t indent, size_t width) {
    if (width <= kIndentBelow || indent + columnsOf(cell) <= width) return std::string(cell);
    std::string lines;
    if (width < indent + kNarrowest) {
        indent = kIndentBelow;
        lines = '\n' + std::string(indent, ' ');
    }
    const size_t room = width - indent;
    while (columnsOf(cell) > room) {
        size_t end = cell.rfind(' ', room);
        if (end == std::string_view::npos || end == 0) end = cell.find(' ');
        if (end == std::string_view::npos) break;
        lines += std::string(cell.substr(0, end)) + '\n' + std::string(indent, ' ');
        cell.remove_prefix(end + 1);
    }
    return lines + std::string(cell);
}

}  // namespace

std::vector<size_t> Table::widths() const {
    std::vector<size_t> widths;
    for (const auto& row : mRows) {
        if (row.size() == 1) continue;
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
    }
    return widths;
}

std::string Table::text(const OutputStyle& style) const {
    const std::vector<size_t> columns = widths();
    std::string all;
    for (const auto& row : mRows) {
        if (row.size() == 1) {
            all += style.hasColour ? kBold + row.front() + kPlain + '\n' : row.front() + '\n';
            continue;
        }
        std::string line;
        size_t indent = 0;
        for (size_t i = 0; i < row.size(); ++i) {
            const std::string cell = i + 1 == columns.size() ? broken(row[i], indent, style.width) : row[i];
            if (cell.starts_with('\n')) line.erase(line.find_last_not_of(' ') + 1);
            line += cell;
            line.append(columns[i] - columnsOf(row[i]) + kColumnGap, ' ');
            indent += columns[i] + kColumnGap;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        all += line + '\n';
    }
    return all;
}

}  // namespace quillon::tool
