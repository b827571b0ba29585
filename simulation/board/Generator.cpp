#include "simulation/board/Generator.h"

#include <algorithm>

namespace simulation {

namespace {

/// One period of lines; each is two periods long, so that any period of pixels lies in one piece.
Picture makePattern() {
    constexpr uint32_t kPeriod = Generator::kPatternPeriod;
    constexpr uint32_t kPitch = Generator::kGridPitch;
    Picture pattern;
    pattern.size = {2 * kPeriod, kPeriod};
    pattern.pixels.resize(static_cast<size_t>(pattern.size.pixels()));
    for (uint32_t y = 0; y < pattern.size.height; ++y) {
        uint8_t* const line = pattern.line(y);
        for (uint32_t x = 0; x < pattern.size.width; ++x) {
            const bool isGrid = x % kPitch == 0 || y % kPitch == 0;
            line[x] = isGrid ? Generator::kGridShade : static_cast<uint8_t>((x + y) % kPeriod);
        }
    }
    return pattern;
}

}  // namespace

Generator::Generator() : mPattern(makePattern()) {}

GeneratorSettings Generator::settings(const Values& values) {
    // No design has generator registers of more than 16 bits; a wider one counts as its low 16 bits.
    const auto field = [&](size_t i) { return static_cast<uint32_t>(values[i] & 0xFFFF); };
    const auto [enable, start, active, width, height, mask, roll, passive, lineWidth] =
        std::array{field(0), field(1), field(2), field(3), field(4), field(5), field(6), field(7), field(8)};
    GeneratorSettings settings;
    settings.isSource = enable == 1;
    settings.runs = start == 1 && active > 0 && width > 0;
    settings.size = {width * kPixelsPerUnit, height + 1};
    settings.taps = mask;
    settings.roll = roll;
    if (settings.runs) {
        // A line takes its gap as well, and a pixel comes in active of every active + passive clocks.
        const int64_t pixels = int64_t{std::max(width, lineWidth)} * kPixelsPerUnit * settings.size.height;
        settings.period = kClock * (pixels * (active + passive) / active);
    }
    return settings;
}

void Generator::show(const GeneratorSettings& settings, uint64_t number) {
    mSettings = settings;
    const auto moved = static_cast<uint32_t>((number - 1) % kPatternPeriod * settings.roll % kPatternPeriod);
    mStart = (kPatternPeriod - moved) % kPatternPeriod;
    mLine.resize(settings.size.width);
}

const uint8_t* Generator::line(uint32_t y) {
    const uint8_t* const pattern = mPattern.line(y % kPatternPeriod) + mStart;
    for (size_t x = 0; x < mLine.size(); x += kPatternPeriod) {
        std::copy_n(pattern, std::min<size_t>(kPatternPeriod, mLine.size() - x), mLine.data() + x);
    }
    for (uint32_t tap = 0; tap < kTaps; ++tap) {
        if ((mSettings.taps >> tap & 1u) != 0) continue;
        for (size_t x = tap; x < mLine.size(); x += kTaps) mLine[x] = 0;
    }
    return mLine.data();
}

}  // namespace simulation
