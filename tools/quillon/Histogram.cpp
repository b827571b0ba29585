#include "Histogram.h"

#include <algorithm>

namespace quillon::tool {

Histogram::Histogram(std::span<const std::byte> pixels) : total(pixels.size()) {
    for (const std::byte pixel : pixels) ++counts[std::to_integer<size_t>(pixel)];
}

int Histogram::darkest() const {
    const auto* first = std::find_if(counts.begin(), counts.end(), [](uint64_t count) { return count != 0; });
    return first == counts.end() ? 0 : static_cast<int>(first - counts.begin());
}

int Histogram::brightest() const {
    const auto last = std::find_if(counts.rbegin(), counts.rend(), [](uint64_t count) { return count != 0; });
    return last == counts.rend() ? 0 : static_cast<int>(counts.rend() - last) - 1;
}

double Histogram::mean() const {
    double sum = 0;
    for (size_t value = 0; value < counts.size(); ++value) {
        sum += static_cast<double>(value) * static_cast<double>(counts[value]);
    }
    return total == 0 ? 0 : sum / static_cast<double>(total);
}

double Histogram::saturated() const {
    return total == 0 ? 0 : static_cast<double>(counts.back()) / static_cast<double>(total);
}

}  // namespace quillon::tool
