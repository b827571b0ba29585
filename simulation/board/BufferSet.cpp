#include "simulation/board/BufferSet.h"

#include <algorithm>

#include "simulation/board/BoardCodes.h"

namespace simulation {

BufferSet::BufferSet(size_t totalSize, int32_t count) : mTotalSize(totalSize), mSlots(static_cast<size_t>(count)) {}

size_t BufferSet::slotOf(int32_t picture) const {
    return (static_cast<size_t>(mPlan.firstBuffer) + static_cast<size_t>(picture) - 1) % mSlots.size();
}

int BufferSet::add(int32_t index, std::span<uint8_t> memory) {
    const std::lock_guard lock(mMutex);
    if (!has(index) || memory.empty() || !mSlots[static_cast<size_t>(index)].memory.empty()) return kBadArgument;
    mSlots[static_cast<size_t>(index)] = {memory, {}, false};
    return kOk;
}

int BufferSet::remove(int32_t index) {
    std::unique_lock lock(mMutex);
    if (!has(index)) return kBadArgument;
    const auto slot = static_cast<size_t>(index);
    mChanged.wait(lock, [&] { return mClaimed != slot; });
    if (mSlots[slot].memory.empty()) return kBadArgument;
    mSlots[slot] = {};
    return kOk;
}

int BufferSet::handBack(int32_t index) {
    const std::lock_guard lock(mMutex);
    if (!has(index)) return kBadArgument;
    mSlots[static_cast<size_t>(index)].isWithHost = false;
    mChanged.notify_all();
    return kOk;
}

bool BufferSet::isComplete() const {
    const std::lock_guard lock(mMutex);
    return std::none_of(mSlots.begin(), mSlots.end(), [](const Slot& slot) { return slot.memory.empty(); });
}

void BufferSet::begin(const TransferPlan& plan) {
    const std::lock_guard lock(mMutex);
    for (Slot& slot : mSlots) {
        slot.record = {};
        slot.isWithHost = false;
    }
    mPlan = plan;
    mLastPicture = 0;
    ++mTransfer;
    mRuns = true;
}

void BufferSet::end() {
    const std::lock_guard lock(mMutex);
    mRuns = false;
    mChanged.notify_all();
}

bool BufferSet::isRunning() const {
    const std::lock_guard lock(mMutex);
    return mRuns;
}

BufferSet::Claim BufferSet::claim(int32_t picture, bool waits) {
    std::unique_lock lock(mMutex);
    const size_t slot = slotOf(picture);
    if (waits) mChanged.wait(lock, [&] { return !mRuns || !mSlots[slot].isWithHost; });
    if (!mRuns) return {ClaimState::ended, {}};
    if (mSlots[slot].isWithHost || mSlots[slot].memory.empty()) return {ClaimState::noBuffer, {}};
    mClaimed = slot;
    const std::span<uint8_t> memory = mSlots[slot].memory;
    return {ClaimState::ready, mPlan.length == 0 ? memory : memory.first(std::min(mPlan.length, memory.size()))};
}

bool BufferSet::publish(const PictureRecord& record) {
    const std::lock_guard lock(mMutex);
    Slot& slot = mSlots[mClaimed];
    mClaimed = kNone;
    if (mRuns) {
        slot.record = record;
        slot.isWithHost = mPlan.handShake;
        mLastPicture = record.picture;
        mRuns = record.picture < mPlan.pictures;
    }
    mChanged.notify_all();
    return mRuns;
}

int32_t BufferSet::wait(int32_t picture, int seconds) const {
    if (picture < 1 || seconds < 0) return kBadArgument;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    std::unique_lock lock(mMutex);
    const uint32_t transfer = mTransfer;
    while (true) {
        if (mTransfer != transfer) return kStopped;
        if (mLastPicture >= picture) return mLastPicture;
        if (!mRuns || picture > mPlan.pictures) return kStopped;
        if (std::chrono::steady_clock::now() >= deadline) return kTimeOut;
        mChanged.wait_until(lock, deadline);
    }
}

int32_t BufferSet::lastPicture() const {
    const std::lock_guard lock(mMutex);
    return mLastPicture;
}

std::optional<PictureRecord> BufferSet::inBuffer(int32_t index) const {
    const std::lock_guard lock(mMutex);
    if (index < 0) return std::nullopt;
    const PictureRecord& record = mSlots[static_cast<size_t>(index) % mSlots.size()].record;
    return record.picture == 0 ? std::nullopt : std::optional(record);
}

std::optional<PictureRecord> BufferSet::ofPicture(int32_t picture) const {
    const std::lock_guard lock(mMutex);
    if (picture < 1) return std::nullopt;
    const PictureRecord& record = mSlots[slotOf(picture)].record;
    return record.picture != picture ? std::nullopt : std::optional(record);
}

}  // namespace simulation
