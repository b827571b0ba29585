// How long a host waits for a parameter: through the applet's exported functions. What the applet itself takes is
// measured over a hardware-access library in which nothing happens, what depends on the board on the software board.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "BenchApplet.h"
#include "fabrix/haprt.h"

namespace {

using bench::BenchGrabber;
using bench::boardApplet;
using bench::emptyApplet;

/// Ends the benchmark when a call answers otherwise than it should: a refusal is not what is measured.
void require(benchmark::State& state, int code, int expected = FG_OK) {
    if (code != expected) state.SkipWithError("the applet answered with another code");
}

auto readFunction(const bench::BenchApplet& applet) {
    return applet.function<decltype(&::Fg_getParameterWithType)>("Fg_getParameterWithType");
}

auto writeFunction(const bench::BenchApplet& applet) {
    return applet.function<decltype(&::Fg_setParameterWithType)>("Fg_setParameterWithType");
}

/// The floor: a call through a trampoline of the applet into an empty function.
void emptyCall(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const auto write = emptyApplet().function<decltype(&::TavoRegisterWrite)>("TavoRegisterWrite");
    FgDevice* device = grabber.device();
    for (auto _ : state) benchmark::DoNotOptimize(write(device, 1, 1));
}
BENCHMARK(emptyCall);

void readInteger(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const auto read = readFunction(emptyApplet());
    for (auto _ : state) {
        int32_t width = 0;
        require(state, read(grabber.handle(), FG_WIDTH, &width, 0, FG_PARAM_TYPE_INT32_T));
        benchmark::DoNotOptimize(width);
    }
}
BENCHMARK(readInteger);

/// Check, store, register write; the value changes each time.
void writeInteger(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    int32_t width = 640;
    const auto write = writeFunction(emptyApplet());
    for (auto _ : state) {
        require(state, write(grabber.handle(), FG_WIDTH, &width, 0, FG_PARAM_TYPE_INT32_T));
        width = width == 640 ? 704 : 640;
    }
}
BENCHMARK(writeInteger);

void writeEnumeration(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    int32_t source = CC_EXSYNC;
    const auto write = writeFunction(emptyApplet());
    for (auto _ : state) {
        require(state, write(grabber.handle(), FG_CCSEL0, &source, 0, FG_PARAM_TYPE_INT32_T));
        source = source == CC_EXSYNC ? CC_NOT_EXSYNC : CC_EXSYNC;
    }
}
BENCHMARK(writeEnumeration);

void writeRefusedByLimits(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    int32_t height = 65536;
    const auto write = writeFunction(emptyApplet());
    for (auto _ : state) {
        require(state, write(grabber.handle(), FG_HEIGHT, &height, 0, FG_PARAM_TYPE_INT32_T), FG_VALUE_OUT_OF_RANGE);
    }
}
BENCHMARK(writeRefusedByLimits);

void identifierByName(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const auto idByName = emptyApplet().function<decltype(&::Fg_getParameterIdByName)>("Fg_getParameterIdByName");
    for (auto _ : state) require(state, idByName(grabber.handle(), "FG_WIDTH"), FG_WIDTH);
}
BENCHMARK(identifierByName);

void openReadFree(benchmark::State& state) {
    const auto read = readFunction(boardApplet());
    for (auto _ : state) {
        BenchGrabber grabber(boardApplet());
        int32_t width = 0;
        require(state, read(grabber.handle(), FG_WIDTH, &width, 0, FG_PARAM_TYPE_INT32_T));
    }
}
BENCHMARK(openReadFree)->Unit(benchmark::kMillisecond);

/// Calculates the curve and loads it into the board.
void kneeReload(benchmark::State& state) {
    BenchGrabber grabber(boardApplet());
    const auto write = writeFunction(boardApplet());
    double offset = 0.0;
    for (auto _ : state) {
        require(state, write(grabber.handle(), FG_KNEE_LUT_OFFSET, &offset, 0, FG_PARAM_TYPE_DOUBLE));
        offset = offset == 0.0 ? 0.25 : 0.0;
    }
}
BENCHMARK(kneeReload)->Unit(benchmark::kMicrosecond);

/// As many writes to the same registers, and nothing else.
void bareKneeWrites(benchmark::State& state) {
    constexpr int kSegments = 1024;
    BenchGrabber grabber(boardApplet());
    const auto write = boardApplet().function<decltype(&::TavoRegisterWrite)>("TavoRegisterWrite");
    const auto info = boardApplet().function<decltype(&::Info)>("Info");
    const auto byName = boardApplet().function<decltype(&::HapGetRegisterByName)>("HapGetRegisterByName");
    fpga_design* design = nullptr;
    require(state, info(GET_INFO_DESIGN_HANDLE, 0, 0, &design, nullptr));
    const int start = byName(design, "AAKneeLutStart");
    const int end = byName(design, "AAKneeLutEnd");
    const int address = byName(design, "AAKneeLutAddr");
    const int strobe = byName(design, "AAKneeLutWrite");
    for (auto _ : state) {
        for (uint64_t segment = 0; segment < kSegments; ++segment) {
            write(grabber.device(), start, 64 * segment);
            write(grabber.device(), end, 64 * segment + 64);
            write(grabber.device(), address, segment);
            for (const uint64_t bit : {1, 2, 4, 8}) write(grabber.device(), strobe, bit);
        }
    }
}
BENCHMARK(bareKneeWrites)->Unit(benchmark::kMicrosecond);

void genApiDocument(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const auto describe = emptyApplet().function<decltype(&::Fg_getParameterInfoXML)>("Fg_getParameterInfoXML");
    size_t size = 0;
    require(state, describe(grabber.handle(), 0, nullptr, &size));
    std::vector<char> document(size);
    for (auto _ : state) {
        size = document.size();
        require(state, describe(grabber.handle(), 0, document.data(), &size));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(genApiDocument)->Unit(benchmark::kMicrosecond);

void copyOfDocument(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const auto describe = emptyApplet().function<decltype(&::Fg_getParameterInfoXML)>("Fg_getParameterInfoXML");
    size_t size = 0;
    require(state, describe(grabber.handle(), 0, nullptr, &size));
    const std::vector<char> document(size, 'x');
    std::vector<char> copy(size);
    for (auto _ : state) {
        std::memcpy(copy.data(), document.data(), document.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(copyOfDocument)->Unit(benchmark::kMicrosecond);

}  // namespace
