#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

#include "board/BoardFixture.h"
#include "simulation/design/DesignText.h"

/// \return the design that the applet brings along
inline simulation::Design quillonDesign() {
    std::ifstream file(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon.design");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::string why;
    const auto design = simulation::parseDesignText(text, why);
    EXPECT_TRUE(design) << why;
    return design.value_or(simulation::Design());
}

/// A board of the applet's own design, set up so that each picture is a whole frame of the camera.
class StageFixture : public BoardFixture {
protected:
    StageFixture() {
        EXPECT_EQ(mBoard.configure(&mStages), 0);
        set("AAAreaWidth", 3);
        set("AAAreaHeight", 31);
        set("AAglobal_work", 1);
        set("AACamPortEnable", 1);
    }

    int handleOf(const std::string& name) const {
        const auto found = std::find_if(mStages.registers.begin(), mStages.registers.end(),
                                        [&](const simulation::RegisterInfo& info) { return info.name == name; });
        EXPECT_NE(found, mStages.registers.end()) << name;
        return static_cast<int>(found - mStages.registers.begin()) + 1;
    }

    void set(const std::string& name, uint64_t value) { write(handleOf(name), value); }

    /// The generator sends frames of 64 x 32 pixels, all taps on.
    void switchToGenerator() {
        set("AAGenActive", 8);
        set("AAGenWidth", 8);
        set("AAGenHeight", 31);
        set("AAGenMask", 15);
        set("AAGenStart", 1);
        set("AAGenEnable", 1);
    }

    /// The pixels of the first picture that arrives; empty where none does.
    std::vector<uint8_t> acquire() {
        if (mBuffers == nullptr) addBuffers(1);
        EXPECT_EQ(start(1), 0);
        const bool hasCome = mBuffers->wait(1, 20) == 1;
        EXPECT_EQ(mBoard.stopDma(0), 0);
        return hasCome ? mMemory[0] : std::vector<uint8_t>();
    }

    const simulation::Design mStages = quillonDesign();
};
