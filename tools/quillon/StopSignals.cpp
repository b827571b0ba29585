#include "StopSignals.h"

#include <pthread.h>

#include <utility>

namespace quillon::tool {

StopSignals::StopSignals() {
    sigemptyset(&mSignals);
    sigaddset(&mSignals, SIGINT);
    sigaddset(&mSignals, SIGTERM);
    sigaddset(&mSignals, SIGHUP);
    sigaddset(&mSignals, SIGQUIT);
    pthread_sigmask(SIG_BLOCK, &mSignals, &mFormerMask);
    mWatcher = std::thread([this] { watch(); });
}

StopSignals::~StopSignals() {
    mIsEnding = true;
    pthread_kill(mWatcher.native_handle(), SIGINT);  // wakes the watcher only
    mWatcher.join();
    pthread_sigmask(SIG_SETMASK, &mFormerMask, nullptr);
}

void StopSignals::forget(int signal) {
    const std::lock_guard lock(mLock);
    if (mReceived == signal) mReceived = 0;
}

void StopSignals::setAction(std::function<void()> action) {
    const std::lock_guard lock(mLock);
    mAction = std::move(action);
    if (mAction && mReceived != 0) mAction();
}

void StopSignals::watch() {
    while (true) {
        int signal = 0;
        if (sigwait(&mSignals, &signal) != 0) continue;
        if (mIsEnding) return;
        const std::lock_guard lock(mLock);
        mReceived = signal;
        if (mAction) mAction();
    }
}

}  // namespace quillon::tool
