#pragma once

#include <atomic>

namespace simulation {

/// The one state object of a runtime library: made at the first use, released when the library goes away.
///
/// A host may still call the library while the process ends, from its own late destructors. So the object is no
/// static with a destructor: `release` deletes it only while it is idle, and a later call simply makes it anew.
/// What a host has forgotten to give back stays reachable until the process is gone.
template <class State>
class LibraryState {
public:
    [[nodiscard]] State& get() {
        State* state = mState.load(std::memory_order_acquire);
        if (state != nullptr) return *state;
        auto* const made = new State;
        if (mState.compare_exchange_strong(state, made, std::memory_order_acq_rel)) return *made;
        delete made;  // another thread was first
        return *state;
    }

    /// The object, where there is one.
    [[nodiscard]] State* peek() const { return mState.load(std::memory_order_acquire); }

    void release() {
        State* const state = peek();
        if (state == nullptr || !state->isIdle()) return;
        mState.store(nullptr, std::memory_order_release);
        delete state;
    }

private:
    std::atomic<State*> mState{nullptr};
};

}  // namespace simulation
