#pragma once

#include <atomic>

#include "fabrix/result_codes.h"

/// Last result of one grabber. Owned by its master; may be written by a wait in one thread and a stop in another.
class Fg_Error {
public:
    /// Records \p ErrNr and returns it, so that callers record and return in one step.
    int setErr(int ErrNr) {
        // The number alone: nothing else is handed over with it.
        error_number_buffer.store(ErrNr, std::memory_order_relaxed);
        return ErrNr;
    }

    /// Takes a code with its text; this applet keeps neither.
    /// \return FG_NOT_SUPPORTED
    int setErrLevel2(const int /*ErrNr*/, const char* /*pErrString*/) { return FG_NOT_SUPPORTED; }

    /// \return the code recorded last; 0 at first
    [[nodiscard]] int getErrorNumberBuffer() const { return error_number_buffer.load(std::memory_order_relaxed); }

private:
    std::atomic<int> error_number_buffer = FG_OK;
};
