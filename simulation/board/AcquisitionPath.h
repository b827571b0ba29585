#pragma once

#include "simulation/board/Camera.h"
#include "simulation/board/DmaEngine.h"
#include "simulation/board/ExposedFrame.h"
#include "simulation/board/Generator.h"
#include "simulation/board/ImageSelection.h"
#include "simulation/board/KneeTable.h"
#include "simulation/board/RegisterStore.h"
#include "simulation/board/TapSorter.h"
#include "simulation/board/Window.h"

namespace simulation {

/// The way from the camera or the generator to the DMA, as the registers have set it up. Settings are taken once a
/// frame, then the frame passes without another look at the registers.
class AcquisitionPath : public FrameProducer {
public:
    AcquisitionPath(const RegisterStore& registers, Camera& camera, const Disturbances& disturbances)
        : mRegisters(registers), mCamera(camera), mDisturbances(disturbances) {}

    /// Finds the registers of the path and empties its memories; not while a transfer runs.
    void configure();

    /// Whether a write to \p handle can let frames pass or hold them back.
    [[nodiscard]] bool isGate(int handle) const;
    [[nodiscard]] bool isReset(int handle) const { return handle != 0 && handle == mReset; }

    /// Whether a write to \p handle makes something happen, whatever its value.
    [[nodiscard]] bool isStrobe(int handle) const { return handle != 0 && handle == mKneeStrobe; }

    /// The host has written the strobe: the knee table takes what its registers hold. Any thread may call it.
    void strobe() { mKnee.load(mKneeRow.values(mRegisters)); }

    void prepare() override;
    [[nodiscard]] bool isOpen() const override;
    [[nodiscard]] bool isOpenAt(BoardTime elapsed) const override;
    [[nodiscard]] bool isSelected(uint64_t number) const override;
    size_t produce(uint64_t number, BoardTime exposure, std::span<uint8_t> target) override;

private:
    static constexpr std::array kGates{
        StageRegister{"AAglobal_work",   0},
        StageRegister{"AAReset",         0},
        StageRegister{"AACamPortEnable", 1},
    };

    [[nodiscard]] GeneratorSettings generator() const;
    [[nodiscard]] ImageSelection selection() const;

    const RegisterStore& mRegisters;
    Camera& mCamera;
    const Disturbances& mDisturbances;

    RegisterRow<kGates.size()> mGateRow{kGates};
    RegisterRow<Generator::kRegisters.size()> mGeneratorRow{Generator::kRegisters};
    RegisterRow<TapSorter::kRegisters.size()> mSorterRow{TapSorter::kRegisters};
    RegisterRow<Window::kRegisters.size()> mWindowRow{Window::kRegisters};
    RegisterRow<ImageSelection::kRegisters.size()> mSelectorRow{ImageSelection::kRegisters};
    RegisterRow<KneeTable::kRegisters.size()> mKneeRow{KneeTable::kRegisters};
    int mReset = 0;
    int mKneeStrobe = 0;

    KneeTable mKnee;

    // Of the thread that asks for frames.
    Generator mGenerator;
    ExposureCurve mExposure;
    TapSorter mSorter;
};

}  // namespace simulation
