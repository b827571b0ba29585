#pragma once

#include <algorithm>
#include <map>
#include <string>

#include "board/BoardFixture.h"

/// A board whose design has the registers of every stage, set up so that each picture is a whole frame of the camera.
class StageFixture : public BoardFixture {
protected:
    StageFixture() {
        EXPECT_EQ(mBoard.configure(&mStages), 0);
        set({
            {"AAAreaWidth",     3 },
            {"AAAreaHeight",    31},
            {"AAglobal_work",   1 },
            {"AACamPortEnable", 1 }
        });
    }

    int handleOf(const std::string& name) const {
        const auto found = std::find_if(mStages.registers.begin(), mStages.registers.end(),
                                        [&](const simulation::RegisterInfo& info) { return info.name == name; });
        EXPECT_NE(found, mStages.registers.end()) << name;
        return static_cast<int>(found - mStages.registers.begin()) + 1;
    }

    void set(const std::map<std::string, uint64_t>& values) {
        for (const auto& [name, value] : values) write(handleOf(name), value);
    }

    /// The generator sends frames of 64 x 32 pixels, all taps on.
    void switchToGenerator() {
        set({
            {"AAGenActive", 8 },
            {"AAGenWidth",  8 },
            {"AAGenHeight", 31},
            {"AAGenMask",   15}
        });
        set({
            {"AAGenStart",  1},
            {"AAGenEnable", 1}
        });
    }

    /// The pixels of the first picture that arrives; empty where none does.
    std::vector<uint8_t> acquire() {
        if (mBuffers == nullptr) addBuffers(1);
        EXPECT_EQ(start(1), 0);
        const bool hasCome = mBuffers->wait(1, 20) == 1;
        EXPECT_EQ(mBoard.stopDma(0), 0);
        return hasCome ? mMemory[0] : std::vector<uint8_t>();
    }

    /// Whether pictures come in a new transfer; if not, none does within a moment.
    bool delivers() {
        if (mBuffers == nullptr) addBuffers(1);
        EXPECT_EQ(start(1), 0);
        const int first = mBuffers->wait(1, 0);
        const bool hasCome = first == 1 || mBuffers->wait(1, 1) == 1;
        EXPECT_EQ(mBoard.stopDma(0), 0);
        return hasCome;
    }

    const simulation::Design mStages{
        2626,
        {{"AAAreaWidth", 12, 1, 0},
          {"AAAreaHeight", 16, 1, 0},
          {"AAglobal_work", 1, 1, 0},
          {"AAReset", 1, 1, 0},
          {"AACamPortEnable", 1, 1, 0},
          {"TapNumber", 4, 1, 0},
          {"TapDirection", 8, 1, 0},
          {"ReadOutMirror", 8, 1, 0},
          {"ReadOutTapOrder", 16, 1, 0},
          {"InsertionBypass", 1, 1, 0},
          {"TapSortingSchemaA", 32, 1, 0},
          {"TapSortingSchemaB", 32, 1, 0},
          {"AAGenActive", 8, 1, 0},
          {"AAGenPassive", 8, 1, 0},
          {"AAGenWidth", 16, 1, 0},
          {"AAGenLineWidth", 16, 1, 0},
          {"AAGenHeight", 16, 1, 0},
          {"AAGenMask", 4, 1, 0},
          {"AAGenRoll", 8, 1, 0},
          {"AAGenEnable", 1, 1, 0},
          {"AAGenStart", 1, 1, 0},
          {"AATrg_DigitalIn", 8, 2, 0},
          {"AATrg_DigitalOut", 2, 1, 0},
          {"AATrg_CCConfig", 16, 1, 0},
          {"AAImgSelect", 16, 1, 0},
          {"AAImgSelectPeriod", 16, 1, 0},
          {"AAKneeLutAddr", 10, 1, 0},
          {"AAKneeLutStart", 17, 1, 0},
          {"AAKneeLutEnd", 17, 1, 0},
          {"AAKneeLutWrite", 4, 1, 0},
          {"AATrgArea_HdPeriod", 16, 1, 0},
          {"AATrg_ImgBusy", 1, 2, 0},
          {"AATrgArea_SwTrgQueueFillLevel", 8, 2, 0},
          {"AATrgArea_SwTrgQueueTriggers", 8, 1, 0},
          {"AATrgArea_SwTrgQueueEnable", 1, 1, 0},
          {"AATrgArea_FlashLow", 20, 1, 0},
          {"AAEnable_ProgFlashDuration", 1, 1, 0},
          {"AATrgArea_ExSyncHigh", 20, 1, 0},
          {"AATrg_ExSyncHighActive", 1, 1, 0},
          {"AATrgArea_ExSyncLow", 20, 1, 0},
          {"AATrgArea_ExSyncMode", 2, 1, 0},
          {"AATrgArea_ExSyncOn", 1, 1, 0},
          {"AATrgArea_FlashDelay", 20, 1, 0},
          {"AATrgArea_FlashEnable", 1, 1, 0},
          {"AATrg_FlashHighActive", 1, 1, 0},
          {"AATrg_ImgInLowActive", 1, 1, 0},
          {"AATrg_ImgInSelect", 3, 1, 0},
          {"AATrg_ImgSwEnable", 1, 1, 0},
          {"AATrg_ImgSwSet", 1, 1, 0},
          {"AATrgArea_ExSyncDelay", 20, 1, 0},
          {"AATrgArea_TriggersTillStop", 31, 1, 0}},
        {}
    };
};
