#include "Table.h"

#include <algorithm>

namespace quillon::tool {

namespace {

constexpr size_t kColumnGap = 2;

}  // namespace

std::string Table::text() const {
    std::vector<size_t> widths;
    for (const auto& row : mRows) {
        if (row.size() == 1) continue;
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    std::string all;
    for (const auto& row : mRows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (row.size() > 1) line.append(widths[i] - row[i].size() + kColumnGap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        all += line + '\n';
    }
    return all;
}

}  // namespace quillon::tool
