#include "simulation/board/Board.h"

#include <limits>
#include <utility>

#include "simulation/board/ReadoutGeometry.h"
#include "simulation/board/Scene.h"

namespace simulation {

namespace {

/// The Quillon design has one acquisition path.
constexpr int kOnlyPort = 0;

std::string findFault(const DmaRequest& request, const BufferSet* buffers) {
    if (request.port != kOnlyPort) return "DMA port " + std::to_string(request.port) + " does not exist: it is 0";
    if (buffers == nullptr) return "the buffer memory is not of this board";
    if (!buffers->isComplete()) return "a buffer of the memory has not been added yet";
    if (request.firstBuffer < 0 || request.firstBuffer >= buffers->count()) return "the first buffer does not exist";
    if (request.mode != DmaRequest::kContinuous && request.mode != DmaRequest::kHandShake) {
        return "DMA mode " + std::to_string(request.mode) + " does not exist: it is 16 or 32";
    }
    if (request.transfers == 0) return "a transfer of 0 pictures cannot start";
    return {};
}

Outcome noInput(unsigned input) {
    return {kBadSetting, "there is no digital input " + std::to_string(input) + ": they are 0 to 7"};
}

}  // namespace

Outcome Board::setCameraFolder(const std::filesystem::path& folder) {
    std::string why;
    auto source = PictureFolder::open(folder, why);
    return setSource(std::move(source), why);
}

Outcome Board::setScene(PictureSize size) {
    std::string why;
    auto source = Scene::create(size, why);
    return setSource(std::move(source), why);
}

Outcome Board::setSource(std::unique_ptr<PictureSource> source, const std::string& why) {
    if (source == nullptr) return {kBadSetting, why};
    const std::lock_guard lock(mSetupMutex);
    if (mDma.isRunning()) return {kBusy, "the camera cannot change while a transfer runs"};
    Outcome outcome = mCamera.setSource(std::move(source));
    mSchedule.cameraChanged();
    return outcome;
}

Outcome Board::setGeometry(int number) { return setGeometry(findGeometry(number), std::to_string(number)); }

Outcome Board::setGeometry(const std::string& text) { return setGeometry(findGeometry(text), text); }

Outcome Board::setGeometry(const ReadoutGeometry* geometry, const std::string& text) {
    if (geometry == nullptr) {
        return {kBadSetting, "there is no geometry \"" + text +
                                 "\": it is SMODE_UNCHANGED (0), SMODE_REVERSE (3) or SMODE_TAB8_0 (30) to "
                                 "SMODE_TAB8_21 (51)"};
    }
    const std::lock_guard lock(mSetupMutex);
    if (mDma.isRunning()) return {kBusy, "the geometry cannot change while a transfer runs"};
    return mCamera.setGeometry(*geometry);
}

Outcome Board::setMode(ClockMode mode) {
    const std::lock_guard lock(mSetupMutex);
    if (mDma.isRunning()) return {kBusy, "the mode cannot change while a transfer runs"};
    mSchedule.setMode(mode);
    return {};
}

Outcome Board::setRate(double rateHz) {
    Outcome outcome = mCamera.setRate(rateHz);
    mSchedule.cameraChanged();
    mDma.wake();
    return outcome;
}

void Board::setCameraTrigger(CameraTrigger trigger) {
    mCamera.setTrigger(trigger);
    mSchedule.cameraChanged();
    mDma.wake();
}

Outcome Board::setReadoutTime(double us) {
    Outcome outcome = mCamera.setReadoutTime(us);
    mSchedule.cameraChanged();
    mDma.wake();
    return outcome;
}

void Board::setLink(bool isUp) {
    mCamera.setLink(isUp);
    mDma.wake();
}

Outcome Board::setInputs(uint32_t levels) {
    if (levels > kMostInputs) {
        return {kBadSetting,
                "digital inputs of " + std::to_string(levels) + " cannot be had: eight inputs are 0 to 255"};
    }
    const std::lock_guard lock(mSetupMutex);
    mInputs = levels;
    mRegisters.set(mDigitalIn, levels);
    mSchedule.setLevels(levels);
    mDma.wake();
    return {};
}

Outcome Board::pulse(unsigned input) {
    if (input >= InputLines::kInputs) return noInput(input);
    mSchedule.pulse(input);
    mDma.wake();
    return {};
}

Outcome Board::setInputRate(unsigned input, double rateHz) {
    if (input >= InputLines::kInputs) return noInput(input);
    // Written so that "not a number" is refused as well.
    if (rateHz != 0 && !(rateHz >= Camera::kLowestRateHz && rateHz <= Camera::kHighestRateHz)) {
        return {kBadSetting,
                "an input rate of " + std::to_string(rateHz) + " pulses/s cannot be had: it is 0.01 to 100000, or 0"};
    }
    const auto period = rateHz == 0 ? std::nullopt : std::optional(BoardTime(static_cast<int64_t>(1e9 / rateHz)));
    mSchedule.setInputPeriod(input, period);
    mDma.wake();
    return {};
}

int Board::outputs() const {
    if (!mIsConfigured) return kNotConfigured;
    // No design has more than 31 outputs.
    return static_cast<int>(mRegisters.valueOf(mDigitalOut) & 0x7FFFFFFF);
}

int Board::ccLine(unsigned line, CcLine& state) const {
    if (!mIsConfigured) return kNotConfigured;
    if (line >= CcLine::kLines) return kBadArgument;
    state = CcLine::of(mRegisters.valueOf(mCcConfig), line);
    return kOk;
}

int Board::triggerReport(TriggerReport& report) {
    if (!mIsConfigured) return kNotConfigured;
    report = mSchedule.report();
    return kOk;
}

size_t Board::openBufferSets() const {
    const std::lock_guard lock(mBuffersMutex);
    return mBuffers.size();
}

int Board::configure(const Design* design) {
    const std::lock_guard lock(mSetupMutex);
    mTrace.add("configure");
    if (design == nullptr) return kBadDesign;
    mDma.stop();
    mRegisters.configure(*design);
    mPath.configure();
    mCounterValue = mRegisters.find("AAFreqCount");
    mDigitalIn = mRegisters.find("AATrg_DigitalIn");
    mDigitalOut = mRegisters.find("AATrg_DigitalOut");
    mCcConfig = mRegisters.find("AATrg_CCConfig");
    mRegisters.set(mDigitalIn, mInputs);
    mSchedule.configure();
    findRoles();  // when all have found their registers
    mIsConfigured = true;
    return kOk;
}

void Board::findRoles() {
    const int counterControl = mRegisters.find("AAFreqCountCtrl");
    mRoles.assign(static_cast<size_t>(mRegisters.count()) + 1, {});
    for (int handle = 1; handle <= mRegisters.count(); ++handle) {
        mRoles[static_cast<size_t>(handle)] = {mSchedule.has(handle), mPath.isGate(handle), mPath.isReset(handle),
                                               mPath.isStrobe(handle), handle == counterControl};
    }
}

int Board::writeRegister(int handle, uint64_t value) {
    mDisturbances.delayAccess();
    const int code = store(handle, value);
    if (mTrace.isOn()) traceWrite(handle, value, code);
    return code;
}

int Board::store(int handle, uint64_t value) {
    if (!mIsConfigured) return kNotConfigured;
    if (handle < 1 || static_cast<size_t>(handle) >= mRoles.size()) return kNoRegister;
    const Role& role = mRoles[static_cast<size_t>(handle)];
    const int code = role.isTimed ? mSchedule.write(handle, value) : mRegisters.write(handle, value);
    if (code != kOk || role == Role()) return code;
    if (role.isCounterControl) mCounter.control(mRegisters.valueOf(handle), std::chrono::steady_clock::now());
    if (role.isStrobe) mPath.strobe();
    if (role.isReset && mRegisters.valueOf(handle) != 0) mDma.restartFrames();
    if (role.isTimed || role.isGate) mDma.wake();
    return kOk;
}

void Board::traceWrite(int handle, uint64_t value, int code) {
    std::string line = "write ";
    const std::string name = mRegisters.nameOf(handle);
    line += name.empty() ? "handle " + std::to_string(handle) : name;
    line += ' ';
    line += std::to_string(value);
    if (code != kOk) line += " refused " + std::to_string(code);
    mTrace.add(line);
}

int Board::readRegister(int handle, uint64_t* value) {
    mDisturbances.delayAccess();
    if (!mIsConfigured) return kNotConfigured;
    if (value == nullptr) return kBadArgument;
    if (handle != 0 && handle == mCounterValue) {
        *value = mCounter.count(std::chrono::steady_clock::now());
        return kOk;
    }
    if (mSchedule.isStatus(handle)) {
        *value = mSchedule.status(handle, !mDma.leads());
        return kOk;
    }
    return mRegisters.read(handle, *value);
}

int Board::cameraStatus(unsigned connector) {
    mTrace.add("camera-status " + std::to_string(connector));
    if (!mIsConfigured) return kNotConfigured;
    const bool isUp = mCamera.linkIsUp() && !mDisturbances.linkIsDown(mSchedule.sinceBegin());
    return connector < kConnectors && isUp ? kLinkBits : 0;
}

BufferSet* Board::createBuffers(size_t totalSize, int32_t count) {
    if (totalSize == 0 || count < 1 || count > BufferSet::kMostBuffers) return nullptr;
    auto made = std::make_shared<BufferSet>(totalSize, count);
    BufferSet* const handle = made.get();
    const std::lock_guard lock(mBuffersMutex);
    mBuffers.emplace(handle, std::move(made));
    return handle;
}

std::shared_ptr<BufferSet> Board::buffers(const void* handle) const {
    const std::lock_guard lock(mBuffersMutex);
    const auto found = mBuffers.find(handle);
    return found == mBuffers.end() ? nullptr : found->second;
}

int Board::freeBuffers(const void* handle) {
    const auto memory = buffers(handle);
    if (memory == nullptr) return kBadArgument;
    const std::lock_guard setup(mSetupMutex);
    if (mDma.uses(*memory)) mDma.stop();
    const std::lock_guard lock(mBuffersMutex);
    return mBuffers.erase(handle) == 1 ? kOk : kBadArgument;
}

Outcome Board::startDma(const DmaRequest& request, const void* handle) {
    const std::lock_guard lock(mSetupMutex);
    mTrace.add("dma start port " + std::to_string(request.port) + " buffer " + std::to_string(request.firstBuffer) +
               " mode " + std::to_string(request.mode) + " transfers " + std::to_string(request.transfers));
    if (!mIsConfigured) return {kNotConfigured, "the board has not been configured"};
    auto memory = buffers(handle);
    std::string fault = findFault(request, memory.get());
    if (!fault.empty()) return {kBadArgument, std::move(fault)};
    const int32_t pictures = request.transfers < 0 ? std::numeric_limits<int32_t>::max() : request.transfers;
    const TransferPlan plan{request.firstBuffer, pictures, request.length, request.mode == DmaRequest::kHandShake};
    const int code = mDma.start(std::move(memory), plan);
    return {code, code == kBusy ? "a transfer runs already" : ""};
}

int Board::stopDma(int port) {
    mTrace.add("dma stop port " + std::to_string(port));
    if (port != kOnlyPort) return kBadArgument;
    mDma.stop();
    return kOk;
}

}  // namespace simulation
