#include "simulation/board/Schedule.h"

#include <algorithm>

namespace simulation {

namespace {

/// What a queue without a fill level register holds.
constexpr unsigned kUsualQueueBits = 8;

/// The model counts anew after 146 years, which a fast transfer that selects few of its frames can reach.
constexpr BoardTime kLastTime = BoardTime::max() / 2;

}  // namespace

void Schedule::configure() {
    const std::lock_guard lock(mMutex);
    mTriggerRow.configure(mRegisters);
    mGeneratorRow.configure(mRegisters);
    mCcConfig = mRegisters.find("AATrg_CCConfig");
    mQueueTriggers = mRegisters.find("AATrgArea_SwTrgQueueTriggers");
    mLimit = mRegisters.find("AATrgArea_TriggersTillStop");
    mBusy = mRegisters.find("AATrg_ImgBusy");
    mFillLevel = mRegisters.find("AATrgArea_SwTrgQueueFillLevel");
    mCapacity = maskToWidth(UINT64_MAX, mFillLevel == 0 ? kUsualQueueBits : mRegisters.widthOf(mFillLevel));
    mClock.start();
    mTiming.restart();
    mFrames.clear();
    mIsTransferring = false;
    mMissedBefore = 0;
    mBegin = BoardTime::max();
    apply();
}

void Schedule::setMode(ClockMode mode) {
    const std::lock_guard lock(mMutex);
    catchUp();
    mClock.setMode(mode, mTiming.now());
}

bool Schedule::has(int handle) const {
    return mTriggerRow.has(handle) || mGeneratorRow.has(handle) ||
           (handle != 0 && (handle == mCcConfig || handle == mQueueTriggers));
}

int Schedule::write(int handle, uint64_t value) {
    const std::lock_guard lock(mMutex);
    catchUp();
    mReads = 0;
    const int code = mRegisters.write(handle, value);
    if (code != kOk) return code;
    if (handle == mQueueTriggers) {
        mTiming.enqueue(mRegisters.valueOf(handle), mCapacity);
    } else {
        apply();
        if (handle == mLimit) mTiming.rearm();
    }
    return kOk;
}

uint64_t Schedule::status(int handle, bool steps) {
    const std::lock_guard lock(mMutex);
    catchUp();
    if (steps && mode() == ClockMode::fast && ++mReads >= kPatience) {
        mReads = 0;
        std::deque<CompletedFrame> unwanted;
        if (const MaybeTime next = mTiming.nextOfTrigger()) mTiming.advance(*next, unwanted);
    }
    const TriggerBlock& trigger = mTiming.trigger();
    return handle == mBusy ? uint64_t{trigger.isBusy(mTiming.now())} : trigger.queued();
}

void Schedule::cameraChanged() {
    const std::lock_guard lock(mMutex);
    catchUp();
    apply();
}

void Schedule::setLevels(uint32_t levels) {
    const std::lock_guard lock(mMutex);
    catchUp();
    mTiming.setLevels(levels);
}

void Schedule::pulse(unsigned input) {
    const std::lock_guard lock(mMutex);
    catchUp();
    mTiming.pulse(input);
}

void Schedule::setInputPeriod(unsigned input, std::optional<BoardTime> period) {
    const std::lock_guard lock(mMutex);
    catchUp();
    mTiming.setInputPeriod(input, period);
}

TriggerReport Schedule::report() {
    const std::lock_guard lock(mMutex);
    catchUp();
    const TriggerBlock& trigger = mTiming.trigger();
    return {mTiming.now(),     trigger.isBusy(mTiming.now()), trigger.queued(), trigger.pulses(),
            trigger.ignored(), trigger.lastTrigger(),         trigger.exSync(), trigger.flash()};
}

void Schedule::begin() {
    const std::lock_guard lock(mMutex);
    catchUp();
    mIsTransferring = true;
    mMissedBefore = mTiming.count().missed;
    mBegin = mTiming.now();
}

void Schedule::end() {
    const std::lock_guard lock(mMutex);
    mIsTransferring = false;
    mFrames.clear();
}

MaybeTime Schedule::nextFrame() {
    const std::lock_guard lock(mMutex);
    return mFrames.empty() ? mTiming.nextFrame() : mFrames.front().time;
}

std::optional<CompletedFrame> Schedule::takeFrame() {
    const std::lock_guard lock(mMutex);
    if (mFrames.empty()) {
        if (mTiming.now() > kLastTime) {
            mBegin = std::max(mBegin - mTiming.now(), -kLastTime / 2);  // long ago is long ago
            mTiming.rebase(mTiming.now());
        }
        const MaybeTime next = mTiming.nextFrame();
        const bool hasCome = next && (mode() == ClockMode::fast || *next <= mClock.now());
        if (!hasCome) return std::nullopt;
        mTiming.advance(*next, mFrames);
        // The host may answer the picture with a trigger, which shall not depend on how fast it is.
        if (mode() == ClockMode::fast) mTiming.advance(mTiming.trigger().busyUntil(), mFrames);
    }
    const CompletedFrame frame = mFrames.front();
    mFrames.pop_front();
    return frame;
}

BoardTime Schedule::sinceBegin(BoardTime time) const {
    const std::lock_guard lock(mMutex);
    return time - mBegin;
}

BoardTime Schedule::sinceBegin() const {
    const std::lock_guard lock(mMutex);
    return (mode() == ClockMode::fast ? mTiming.now() : mClock.now()) - mBegin;
}

uint64_t Schedule::missed() const {
    const std::lock_guard lock(mMutex);
    return mTiming.count().missed - mMissedBefore;
}

/// In fast mode only things at the present moment are left to do.
void Schedule::catchUp() {
    constexpr BoardTime kLong = std::chrono::seconds(2);
    const BoardTime now = mode() == ClockMode::fast ? mTiming.now() : mClock.now();
    const bool isWanted = mIsTransferring && (now - mTiming.now() < kLong || mTiming.nextFrame());
    if (isWanted) {
        mTiming.advance(now, mFrames);
    } else {
        mTiming.pass(now);
    }
}

void Schedule::apply() { mTiming.apply(settings()); }

TimingSettings Schedule::settings() const {
    constexpr unsigned kFirstLine = 0;
    TimingSettings settings;
    settings.trigger = TriggerSettings::of(mTriggerRow.values(mRegisters));
    const CameraTrigger choice = mCamera.trigger();
    const bool isFree = choice == CameraTrigger::free || (choice == CameraTrigger::automatic && !settings.trigger.isOn);
    const unsigned line = choice < CameraTrigger::cc1
                              ? kFirstLine
                              : static_cast<unsigned>(choice) - static_cast<unsigned>(CameraTrigger::cc1);
    settings.line = CcLine::of(mRegisters.valueOf(mCcConfig), line);
    settings.camera = {!isFree, mCamera.period(), mCamera.readoutTime()};
    const GeneratorSettings generator = Generator::settings(mGeneratorRow.values(mRegisters));
    settings.generatorIsSource = generator.isSource;
    if (generator.runs) settings.generatorPeriod = generator.period;
    return settings;
}

}  // namespace simulation
