#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "fabrix/applet.h"

/// The operations that the applet itself calls.
enum class Operation {
    kConfigure,
    kRegisterWrite,
    kRegisterRead,
    kDmaStartRead,
    kDmaStop,
    kDmaTestBuffer,
    kDmaWaitForBuffer,
    kDmaTag,
    kDmaLength,
    kCameraStatus,
    kLoadDesign,
    kUnloadDesign,
    kRegisterByName,
    kBitRange,
    kRegisterName,
    kDirection,
    kRegisterCount,
    kUserInfo,
};
inline constexpr int kOperations = static_cast<int>(Operation::kUserInfo) + 1;

/// Both runtime libraries as functions in the loaders' tables: the real design's registers, a DMA that brings
/// pictures only when told to, and one planned fault. It records nothing and allocates nothing, so that every
/// allocation during a call is the applet's. One lives at a time; any thread may call the operations.
class FaultyRuntime {
public:
    /// What a failing operation answers where it answers a code; pointers are null then, handles and widths 0.
    static constexpr int kFault = -77;
    /// What a register operation answers for a handle that the design does not have.
    static constexpr int kNoRegister = -20;
    /// What a wait answers when the transfer has been stopped.
    static constexpr int kStopped = -30;

    FaultyRuntime();
    FaultyRuntime(const FaultyRuntime&) = delete;
    FaultyRuntime& operator=(const FaultyRuntime&) = delete;
    ~FaultyRuntime();

    /// Lets the \p n -th call of an operation fail, counted from now and from 1. Forgets an earlier plan.
    void plan(Operation operation, int n);
    /// Forgets the plan. \return whether the fault has happened
    bool takeFault();

    /// Designs loaded and not unloaded yet; unloading one twice makes it negative.
    [[nodiscard]] int designsOpen() const { return mDesignsOpen; }
    [[nodiscard]] int unloads() const { return mUnloads; }
    /// Threads that wait for a picture at this moment.
    [[nodiscard]] int waiters();

    static FgDevice* device();
    static dma_mem* memory();

private:
    [[nodiscard]] bool fails(Operation operation);
    static void fillTables();
    static void clearTables();

    std::atomic<int> mOperation{-1};
    std::atomic<int> mCallsLeft{0};
    std::atomic<bool> mHasFailed{false};
    std::atomic<int> mDesignsOpen{0};
    std::atomic<int> mUnloads{0};
    std::array<std::atomic<uint64_t>, 128> mValues{};

    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mIsRunning = false;  // guarded by mMutex, as the counter below
    int mWaiters = 0;
};
