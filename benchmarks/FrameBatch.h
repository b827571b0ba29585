#pragma once

#include <benchmark/benchmark.h>

#include "fabrix/types.h"

namespace bench {

/// Buffers of the host, for every work that makes frames.
constexpr frameindex_t kBuffers = 8;

/// \return frames of one iteration: 256 of 1024 x 1024 pixels, and as many bytes of other sizes, at most 2048 frames
constexpr frameindex_t framesOf(int side) {
    constexpr frameindex_t kPixels = frameindex_t{256} * 1024 * 1024;
    const frameindex_t frames = kPixels / (frameindex_t{side} * side);
    return frames < 2048 ? frames : 2048;
}

/// Sides of the frames, and the clocks: the processor time of all threads is what the frames take on one core.
inline void overSizes(benchmark::internal::Benchmark* work) {
    work->Arg(256)->Arg(1024)->Arg(8192);
    work->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
}

/// Prints the frames a second of a finished benchmark.
inline void countFrames(benchmark::State& state, int side) {
    state.counters["frames/s"] =
        benchmark::Counter(static_cast<double>(state.iterations() * framesOf(side)), benchmark::Counter::kIsRate);
}

}  // namespace bench
