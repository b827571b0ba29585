#include "simulation/board/PixelCurve.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

namespace simulation {

namespace {

using Pair = std::array<uint8_t, 2>;

std::array<uint8_t, PixelCurve::kShades> allShades() {
    std::array<uint8_t, PixelCurve::kShades> shades{};
    std::iota(shades.begin(), shades.end(), uint8_t{0});
    return shades;
}

}  // namespace

PixelCurve::PixelCurve() : PixelCurve(allShades()) {}

PixelCurve::PixelCurve(const std::array<uint8_t, kShades>& shades)
    : mShades(shades), mIsIdentity(shades == allShades()) {
    if (mIsIdentity) return;
    mPairs.resize(kShades * kShades);
    for (size_t i = 0; i < mPairs.size(); ++i) {
        const auto [first, second] = std::bit_cast<Pair>(static_cast<uint16_t>(i));
        mPairs[i] = std::bit_cast<uint16_t>(Pair{mShades[first], mShades[second]});
    }
}

void PixelCurve::apply(std::span<uint8_t> pixels) const {
    if (mIsIdentity) return;
    const size_t even = pixels.size() - pixels.size() % sizeof(Pair);
    // Kept apart from the object, which the compiler must expect the pixels to overlap.
    const uint16_t* const pairs = mPairs.data();
    uint8_t* const data = pixels.data();
    for (size_t i = 0; i < even; i += sizeof(Pair)) {
        uint16_t pair = 0;
        std::memcpy(&pair, data + i, sizeof(pair));
        std::memcpy(data + i, pairs + pair, sizeof(pair));
    }
    for (uint8_t& pixel : pixels.subspan(even)) pixel = mShades[pixel];
}

}  // namespace simulation
