#pragma once

/// Trigger modes of a port. The numbers between them can be stored, but a mode update refuses them.
enum TriggerMode : unsigned {
    FREE_RUN = 0,                      ///< the camera runs by itself
    GRABBER_CONTROLLED = 1,            ///< ExSync at the programmed frame rate
    ASYNC_TRIGGER = 2,                 ///< one ExSync for each pulse of the trigger input
    GRABBER_CONTROLLED_SYNCHRON = 3,   ///< as GRABBER_CONTROLLED; port A's generator drives port B as well
    ASYNC_SOFTWARE_TRIGGER = 4,        ///< one ExSync for each software trigger
    ASYNC_SOFTWARE_TRIGGER_QUEUED = 7  ///< software triggers wait in a queue of the block
};

/// \return whether the block makes ExSync by itself in this mode
constexpr bool hasGenerator(unsigned mode) { return mode == GRABBER_CONTROLLED || mode == GRABBER_CONTROLLED_SYNCHRON; }

/// \return whether a pulse, of the input or of the host, starts each ExSync in this mode
constexpr bool isTriggered(unsigned mode) {
    return mode == ASYNC_TRIGGER || mode == ASYNC_SOFTWARE_TRIGGER || mode == ASYNC_SOFTWARE_TRIGGER_QUEUED;
}
