// How evenly pictures reach a host that waits for each: 527 frames/s, triggered by the board, in real time. It says
// something about the software board on this machine only, and nothing while the machine is busy otherwise.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

#include "host/Acquisition.h"
#include "host/AppletLibrary.h"
#include "host/Grabber.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace quillon::host;

constexpr int32_t kGrabberControlled = 1;
constexpr double kFramesPerSecond = 527.0;
constexpr frameindex_t kPictures = 5 * 527;

/// The time base is a multiple of the clock with which the period comes within a microsecond of 1 / 527 s.
bool setUp(Grabber& grabber, double& periodUs) {
    double rate = 0;
    const bool isSet = grabber.write(FG_TRIGGERMODE, kGrabberControlled) == FG_OK &&
                       grabber.write(FG_PRESCALER, 0.8) == FG_OK && grabber.write(FG_EXPOSURE, 1000) == FG_OK &&
                       grabber.write(FG_FRAMESPERSEC, kFramesPerSecond) == FG_OK &&
                       grabber.write(FG_EXSYNCON, 1) == FG_OK && grabber.read(FG_FRAMESPERSEC, rate) == FG_OK;
    periodUs = 1e6 / rate;
    return isSet;
}

/// A host that waits is woken by the operating system, late on a virtual machine; one that asks again and again is not.
enum class Host { kWaits, kAsks };

bool arrives(Acquisition& acquisition, frameindex_t picture, Host host) {
    if (host == Host::kWaits) return acquisition.waitFor(picture, 5) >= picture;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(5);
    while (acquisition.lastPicture() < picture) {
        if (Clock::now() >= end) return false;
    }
    return true;
}

/// How far each gap between pictures is from the period, in microseconds, in ascending order; empty after a failure.
std::vector<double> gapErrors(Acquisition& acquisition, double periodUs, Host host) {
    std::vector<double> errors;
    Clock::time_point before;
    for (frameindex_t picture = 1; picture <= kPictures; ++picture) {
        if (!arrives(acquisition, picture, host)) return {};
        const Clock::time_point now = Clock::now();
        const double gapUs = std::chrono::duration<double, std::micro>(now - before).count();
        if (picture > 1) errors.push_back(std::abs(gapUs - periodUs));
        before = now;
    }
    std::sort(errors.begin(), errors.end());
    return errors;
}

void report(benchmark::State& state, const std::vector<double>& errors, double periodUs) {
    state.counters["frames/s"] = 1e6 / periodUs;
    state.counters["gap_error_p50_us"] = errors[errors.size() / 2];
    state.counters["gap_error_p99_us"] = errors[errors.size() * 99 / 100];
    state.counters["gap_error_max_us"] = errors.back();
}

void pacing(benchmark::State& state, Host host) {
    const AppletLibrary applet(QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so");
    Grabber grabber(applet);
    double periodUs = 0;
    if (!setUp(grabber, periodUs)) {
        state.SkipWithError("the trigger could not be set up");
        return;
    }
    const BufferSet buffers(grabber, 1024 * 1024, 8);
    for (auto _ : state) {
        Acquisition acquisition(grabber, buffers, kPictures);
        const std::vector<double> errors = gapErrors(acquisition, periodUs, host);
        if (errors.empty()) {
            state.SkipWithError("a picture did not come");
            return;
        }
        report(state, errors, periodUs);
    }
}
BENCHMARK_CAPTURE(pacing, waiting, Host::kWaits)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(pacing, asking, Host::kAsks)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

/// The floor: a thread that only sleeps, to the same points of time. What it misses, the machine misses.
void barePacing(benchmark::State& state) {
    constexpr double kPeriodUs = 1e6 / kFramesPerSecond;
    for (auto _ : state) {
        const Clock::time_point begin = Clock::now();
        Clock::time_point before = begin;
        std::vector<double> errors;
        for (frameindex_t wake = 1; wake <= kPictures; ++wake) {
            const std::chrono::duration<double, std::micro> due(kPeriodUs * static_cast<double>(wake));
            std::this_thread::sleep_until(begin + std::chrono::duration_cast<Clock::duration>(due));
            const Clock::time_point now = Clock::now();
            const double gapUs = std::chrono::duration<double, std::micro>(now - before).count();
            if (wake > 1) errors.push_back(std::abs(gapUs - kPeriodUs));
            before = now;
        }
        std::sort(errors.begin(), errors.end());
        report(state, errors, kPeriodUs);
    }
}
BENCHMARK(barePacing)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

}  // namespace
