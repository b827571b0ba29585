#pragma once

#include <cstdint>
#include <mutex>

namespace tavo::templates::platform {

/// Holds a process mutex for a scope and, with it, a flag variable that reads 0 when the scope is left.
/// Mutex and variable are borrowed and must outlive the guard. Used by one thread.
class SpinLockVariableGuard {
public:
    /// Locks \p mutex; \p variable may be null.
    explicit SpinLockVariableGuard(std::mutex& mutex, uint32_t* variable = nullptr)
        : mMutex(&mutex), mVariable(variable) {
        mMutex->lock();
        mHoldsLock = true;
    }
    SpinLockVariableGuard(const SpinLockVariableGuard&) = delete;
    SpinLockVariableGuard& operator=(const SpinLockVariableGuard&) = delete;

    virtual ~SpinLockVariableGuard() {
        if (!mHoldsLock) return;
        if (mVariable != nullptr) *mVariable = 0;
        mMutex->unlock();
    }

private:
    std::mutex* mMutex;
    uint32_t* mVariable;
    bool mHoldsLock = false;
};

}  // namespace tavo::templates::platform
