#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <vector>

#include "simulation/board/Frame.h"
#include "simulation/board/RegisterRow.h"

namespace simulation {

/// What the registers say about the test-image generator.
struct GeneratorSettings {
    bool isSource = false;  // frames come from here, not from the camera
    bool runs = false;      // it sends frames
    PictureSize size;
    uint32_t taps = 0;                   // bit i: tap i + 1 is on
    uint32_t roll = 0;                   // pixels that the pattern moves from frame to frame
    std::chrono::nanoseconds period{0};  // of its frames, while it runs

    bool operator==(const GeneratorSettings&) const = default;
};

/// The test-image generator: a gray wedge along the diagonal under a grid of white lines. The pattern moves to the
/// right; columns of a tap that is off are black. Column x belongs to tap x modulo 4, plus 1. Used by one thread.
class Generator : public Frame {
public:
    Generator();

    static constexpr std::array kRegisters{
        StageRegister{"AAGenEnable",    0  },
        StageRegister{"AAGenStart",     1  },
        StageRegister{"AAGenActive",    1  },
        StageRegister{"AAGenWidth",     0  },
        StageRegister{"AAGenHeight",    0  },
        StageRegister{"AAGenMask",      0xF},
        StageRegister{"AAGenRoll",      0  },
        StageRegister{"AAGenPassive",   0  },
        StageRegister{"AAGenLineWidth", 0  },
    };
    using Values = std::array<uint64_t, kRegisters.size()>;

    static constexpr uint32_t kPixelsPerUnit = 8;         // of the two width registers
    static constexpr std::chrono::nanoseconds kClock{8};  // a cycle of the 125 MHz clock
    static constexpr uint32_t kTaps = 4;
    static constexpr uint32_t kPatternPeriod = 256;  // pixels and lines after which the pattern repeats itself
    static constexpr uint32_t kGridPitch = 64;
    static constexpr uint8_t kGridShade = 255;

    [[nodiscard]] static GeneratorSettings settings(const Values& values);

    /// Turns to frame \p number, from 1.
    void show(const GeneratorSettings& settings, uint64_t number);

    [[nodiscard]] PictureSize size() const override { return mSettings.size; }
    [[nodiscard]] const uint8_t* line(uint32_t y) override;

private:
    const Picture mPattern;
    GeneratorSettings mSettings;
    uint32_t mStart = 0;  // column of the pattern at the left edge
    std::vector<uint8_t> mLine;
};

}  // namespace simulation
