#include "simulation/board/AcquisitionPath.h"

#include <tuple>

namespace simulation {

void AcquisitionPath::configure() {
    mGateRow.configure(mRegisters);
    mGeneratorRow.configure(mRegisters);
    mSorterRow.configure(mRegisters);
    mWindowRow.configure(mRegisters);
    mSelectorRow.configure(mRegisters);
    mKneeRow.configure(mRegisters);
    mReset = mRegisters.find("AAReset");
    mKneeStrobe = mRegisters.find("AAKneeLutWrite");
    mKnee.reset();
}

bool AcquisitionPath::isGate(int handle) const {
    return mGateRow.has(handle) || mGeneratorRow.has(handle) || mSelectorRow.has(handle);
}

GeneratorSettings AcquisitionPath::generator() const { return Generator::settings(mGeneratorRow.values(mRegisters)); }

ImageSelection AcquisitionPath::selection() const { return ImageSelection::of(mSelectorRow.values(mRegisters)); }

void AcquisitionPath::prepare() {
    if (!generator().isSource) std::ignore = mCamera.source();
}

bool AcquisitionPath::isOpen() const {
    const auto [globalWork, reset, portEnable] = mGateRow.values(mRegisters);
    if (globalWork != 1 || reset != 0 || !selection().passesAny()) return false;
    const GeneratorSettings settings = generator();
    return settings.isSource ? settings.runs : mCamera.linkIsUp() && portEnable == 1;
}

bool AcquisitionPath::isOpenAt(BoardTime elapsed) const {
    return isOpen() && (generator().isSource || !mDisturbances.linkIsDown(elapsed));
}

bool AcquisitionPath::isSelected(uint64_t number) const { return selection().passes(number); }

size_t AcquisitionPath::produce(uint64_t number, BoardTime exposure, std::span<uint8_t> target) {
    const PixelCurve& curve = mKnee.curve();
    const Window window = Window::of(mWindowRow.values(mRegisters));
    const TapSorter::Values taps = mSorterRow.values(mRegisters);
    const GeneratorSettings settings = generator();
    if (settings.isSource) {
        mGenerator.show(settings, number);
        const LineOrder& order = mSorter.order(taps, unchangedGeometry(), settings.size.width);
        return cutWindow(window, mGenerator, order, curve, target);
    }
    PictureFrame scene(mCamera.source().frame(number));
    const LineOrder& order = mSorter.order(taps, mCamera.geometry(), scene.size().width);
    mExposure.set(exposure == kAsShown ? Camera::kNominalExposure : exposure, Camera::kNominalExposure);
    if (mExposure.changesNothing()) return cutWindow(window, scene, order, curve, target);
    ExposedFrame frame(scene, mExposure);
    return cutWindow(window, frame, order, curve, target);
}

}  // namespace simulation
