#include "simulation/board/InputLines.h"

namespace simulation {

void InputLines::setPeriod(unsigned input, std::optional<BoardTime> period, BoardTime now) {
    mScripts[input] = {period, now};
}

MaybeTime InputLines::next(unsigned input, BoardTime now) const {
    MaybeTime next;
    if (mPulseEnds[input] > now) next = mPulseEnds[input];
    const auto& [period, origin] = mScripts[input];
    if (!period) return next;
    const BoardTime phase = (now - origin) % *period;
    const bool isInPulse = now - origin >= *period && phase < kPulseWidth;
    return earlier(next, now - phase + (isInPulse ? kPulseWidth : *period));
}

std::optional<bool> InputLines::edge(unsigned input, BoardTime now) const {
    const bool rests = level(input);
    if (mPulseEnds[input] == now && now > BoardTime(0)) return rests;
    const auto& [period, origin] = mScripts[input];
    if (!period || now - origin < *period) return std::nullopt;
    const BoardTime phase = (now - origin) % *period;
    if (phase == BoardTime(0)) return !rests;
    if (phase == kPulseWidth) return rests;
    return std::nullopt;
}

void InputLines::restart() {
    mPulseEnds = {};
    for (Script& script : mScripts) script.origin = BoardTime(0);
}

void InputLines::skip(BoardTime by) {
    for (BoardTime& end : mPulseEnds) end += by;
    for (Script& script : mScripts) script.origin += by;
}

}  // namespace simulation
