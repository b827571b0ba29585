#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulation {

/// What becomes of each 8-bit pixel value.
class PixelCurve {
public:
    static constexpr size_t kShades = 256;

    /// Every value stays as it is.
    PixelCurve();

    explicit PixelCurve(const std::array<uint8_t, kShades>& shades);

    /// Replaces every pixel; the identity does not even look at them.
    void apply(std::span<uint8_t> pixels) const;

    [[nodiscard]] uint8_t operator[](uint8_t shade) const { return mShades[shade]; }
    [[nodiscard]] bool isIdentity() const { return mIsIdentity; }

private:
    std::array<uint8_t, kShades> mShades;
    bool mIsIdentity;
    std::vector<uint16_t> mPairs;  ///< what becomes of two pixels at once, by their 16 bits; empty for the identity
};

}  // namespace simulation
