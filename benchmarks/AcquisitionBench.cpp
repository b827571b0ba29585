// Pictures through the whole library into the host's buffers: how many, from how many boards, and how fast it all ends.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "BenchApplet.h"
#include "BoardControl.h"
#include "FrameBatch.h"
#include "host/Acquisition.h"
#include "host/AppletLibrary.h"
#include "host/Grabber.h"

namespace {

using bench::boardControl;
using bench::framesOf;
using bench::kBuffers;
using namespace quillon::host;

using Seconds = std::chrono::duration<double>;
using Clock = std::chrono::steady_clock;

constexpr int kTimeoutSeconds = 60;
constexpr int kOtherGeometry = 30;  // SMODE_TAB8_0

const AppletLibrary& applet() {
    static const AppletLibrary library(QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so");
    return library;
}

/// A board of the software's kind with a camera of \p side by \p side pixels, which the window shows whole.
/// \throws std::runtime_error when a setting is refused
std::unique_ptr<Grabber> openBoard(int number, int side, tavo_sim_clock clock, int geometry = 0) {
    FgDevice* const device = boardControl().open(number);
    const auto require = [](int code) {
        if (code < 0) throw std::runtime_error("the board cannot be set up: code " + std::to_string(code));
    };
    require(boardControl().geometry(device, 0));
    require(boardControl().scene(device, side, side));
    require(boardControl().geometry(device, geometry));
    require(boardControl().mode(device, clock));
    auto grabber = std::make_unique<Grabber>(applet(), device);
    require(grabber->write(FG_XOFFSET, 0));
    require(grabber->write(FG_YOFFSET, 0));
    require(grabber->write(FG_WIDTH, side));
    require(grabber->write(FG_HEIGHT, side));
    return grabber;
}

/// Acquires a batch of pictures in each iteration, in fast mode.
void acquire(benchmark::State& state, Grabber& grabber, int side) {
    const frameindex_t pictures = framesOf(side);
    const BufferSet buffers(grabber, static_cast<size_t>(side) * static_cast<size_t>(side), kBuffers);
    for (auto _ : state) {
        Acquisition acquisition(grabber, buffers, pictures);
        if (acquisition.waitFor(pictures, kTimeoutSeconds) != pictures) state.SkipWithError("a picture did not come");
    }
    bench::countFrames(state, side);
}

/// Settings as they are after opening.
void frames(benchmark::State& state) {
    const auto side = static_cast<int>(state.range(0));
    const auto grabber = openBoard(0, side, TAVO_SIM_FAST);
    acquire(state, *grabber, side);
}
BENCHMARK(frames)->Apply(bench::overSizes);

/// The camera reads out over eight taps, the board sorts them and applies a knee curve.
void sortedFrames(benchmark::State& state) {
    const auto side = static_cast<int>(state.range(0));
    const auto grabber = openBoard(0, side, TAVO_SIM_FAST, kOtherGeometry);
    if (grabber->write(FG_SENSORREADOUT, kOtherGeometry) != FG_OK || grabber->write(FG_KNEE_LUT_GAMMA, 1.5) != FG_OK) {
        state.SkipWithError("a setting was refused");
        return;
    }
    acquire(state, *grabber, side);
}
BENCHMARK(sortedFrames)->Apply(bench::overSizes);

/// The floor: the same bytes copied into the same number of buffers.
void copyOfFrames(benchmark::State& state) {
    const auto side = static_cast<int>(state.range(0));
    const size_t bytes = static_cast<size_t>(side) * static_cast<size_t>(side);
    const std::vector<char> source(bytes, 'x');
    std::vector<std::vector<char>> buffers(kBuffers, std::vector<char>(bytes));
    for (auto _ : state) {
        for (frameindex_t frame = 0; frame < framesOf(side); ++frame) {
            std::vector<char>& buffer = buffers[static_cast<size_t>(frame % kBuffers)];
            std::memcpy(buffer.data(), source.data(), bytes);
            benchmark::DoNotOptimize(buffer.data());
            benchmark::ClobberMemory();
        }
    }
    bench::countFrames(state, side);
}
BENCHMARK(copyOfFrames)->Apply(bench::overSizes);

/// Boards in one process, each with a camera of 100 frames/s in real time and a thread of the host's: frames that did
/// not reach the host count as lost, for whatever reason.
void grabbers(benchmark::State& state) {
    constexpr int kSide = 1024;
    constexpr frameindex_t kPictures = 100;
    std::vector<std::unique_ptr<Grabber>> boards;
    for (int number = 0; number < state.range(0); ++number) {
        boards.push_back(openBoard(number, kSide, TAVO_SIM_REALTIME));
    }
    const auto run = [](Grabber& grabber) {
        const BufferSet buffers(grabber, size_t{kSide} * kSide, kBuffers);
        Acquisition acquisition(grabber, buffers, kPictures);
        std::ignore = acquisition.waitFor(kPictures, kTimeoutSeconds);
    };
    double lost = 0;
    for (auto _ : state) {
        std::vector<std::jthread> hosts;
        for (const auto& board : boards) hosts.emplace_back(run, std::ref(*board));
        hosts.clear();
        for (const auto& board : boards) {
            tavo_sim_statistics counts{};
            boardControl().statistics(board->device(), &counts);
            lost += static_cast<double>(counts.lost + counts.skipped + counts.missed);
        }
    }
    state.counters["lost"] = lost;
    state.counters["frames/s"] = benchmark::Counter(
        static_cast<double>(state.iterations() * state.range(0) * kPictures), benchmark::Counter::kIsRate);
}
BENCHMARK(grabbers)->Arg(1)->Arg(4)->Arg(16)->Iterations(3)->MeasureProcessCPUTime()->UseRealTime()->Unit(
    benchmark::kMillisecond);

/// From the call of stop until a thread that waits for a picture has its answer, and the stop its result.
void stopDuringWait(benchmark::State& state) {
    const auto grabber = openBoard(0, 256, TAVO_SIM_REALTIME);
    const BufferSet buffers(*grabber, 256 * 256, kBuffers);
    constexpr frameindex_t kNever = 1000000;
    for (auto _ : state) {
        Acquisition acquisition(*grabber, buffers, kNever);
        std::thread waiting([&] { std::ignore = acquisition.waitFor(kNever, kTimeoutSeconds); });
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        const Clock::time_point begin = Clock::now();
        const int code = acquisition.stop();
        waiting.join();
        state.SetIterationTime(Seconds(Clock::now() - begin).count());
        if (code != FG_OK) state.SkipWithError("the acquisition did not stop");
    }
}
BENCHMARK(stopDuringWait)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// Freeing a grabber that acquires in real time.
void freeWhileAcquiring(benchmark::State& state) {
    constexpr size_t kBytes = 256 * 256;
    const auto keeper = openBoard(0, 256, TAVO_SIM_REALTIME);
    const AppletFunctions& functions = applet().functions();
    FgDevice* const device = keeper->device();
    for (auto _ : state) {
        Fg_Struct handle{};
        int code = FG_OK;
        handle.Master = functions.stdEntry(device, &code, 0);
        const BufferSet buffers(*keeper, kBytes, kBuffers);
        if (code != FG_OK || functions.acquire(&handle, 0, 1000000, 1, buffers.handle()) != FG_OK) {
            state.SkipWithError("the acquisition did not start");
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        const Clock::time_point begin = Clock::now();
        functions.freeGrabber(&handle);
        state.SetIterationTime(Seconds(Clock::now() - begin).count());
    }
}
BENCHMARK(freeWhileAcquiring)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
