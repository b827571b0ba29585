// How long a host waits for a parameter: through the applet's exported functions, on the software board.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "host/AppletLibrary.h"
#include "host/Grabber.h"
#include "host/HostError.h"

namespace {

using quillon::host::AppletLibrary;
using quillon::host::Grabber;

const AppletLibrary& applet() {
    static AppletLibrary library(QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so");
    return library;
}

/// Ends the benchmark when a call answers otherwise than it should: a refusal is not what is measured.
void require(benchmark::State& state, int code, int expected) {
    if (code != expected) state.SkipWithError("the applet answered with another code");
}

/// The floor: an exported function that only asks the grabber for a number that it holds.
void parameterCount(benchmark::State& state) {
    const Grabber grabber(applet());
    const auto& functions = applet().functions();
    for (auto _ : state) {
        benchmark::DoNotOptimize(functions.getNrOfParameter(grabber.handle()));
    }
}
BENCHMARK(parameterCount);

void readInteger(benchmark::State& state) {
    const Grabber grabber(applet());
    for (auto _ : state) {
        int32_t width = 0;
        require(state, grabber.read(FG_WIDTH, width), FG_OK);
        benchmark::DoNotOptimize(width);
    }
}
BENCHMARK(readInteger);

/// Check, store, register write and dependencies; the value changes each time.
void writeInteger(benchmark::State& state) {
    Grabber grabber(applet());
    int32_t width = 640;
    for (auto _ : state) {
        require(state, grabber.write(FG_WIDTH, width), FG_OK);
        width = width == 640 ? 704 : 640;
    }
}
BENCHMARK(writeInteger);

void writeRefusedByLimits(benchmark::State& state) {
    Grabber grabber(applet());
    for (auto _ : state) {
        require(state, grabber.write(FG_HEIGHT, 65536), FG_VALUE_OUT_OF_RANGE);
    }
}
BENCHMARK(writeRefusedByLimits);

void openAndFree(benchmark::State& state) {
    for (auto _ : state) {
        const Grabber grabber(applet());
        benchmark::DoNotOptimize(grabber.handle());
    }
}
BENCHMARK(openAndFree)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillon_benchmarks: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
