// Configuration files, beside reading and writing the same bytes.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "BenchApplet.h"

namespace {

using bench::BenchGrabber;
using bench::emptyApplet;

/// A file of a name of its own, gone at the end.
class ScratchFile {
public:
    ScratchFile()
        : mPath(std::filesystem::temp_directory_path() / ("quillon-bench-" + std::to_string(getpid()) + ".mcf")) {}
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() { std::filesystem::remove(mPath); }

    [[nodiscard]] const std::string& name() const { return mPath.native(); }
    [[nodiscard]] std::string text() const {
        std::ifstream file(mPath);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& text) const { std::ofstream(mPath) << text; }

private:
    std::filesystem::path mPath;
};

/// Calls one of the two functions that take the name of a configuration file.
void call(const char* function, BenchGrabber& grabber, benchmark::State& state, const ScratchFile& file) {
    const auto work = emptyApplet().function<decltype(&::Fg_saveConfig)>(function);
    if (work(grabber.handle(), file.name().c_str()) != FG_OK) state.SkipWithError("the file was refused");
}

void save(BenchGrabber& grabber, benchmark::State& state, const ScratchFile& file) {
    call("Fg_saveConfig", grabber, state, file);
}

void load(BenchGrabber& grabber, benchmark::State& state, const ScratchFile& file) {
    call("Fg_loadConfig", grabber, state, file);
}

void saveConfiguration(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const ScratchFile file;
    for (auto _ : state) save(grabber, state, file);
}
BENCHMARK(saveConfiguration)->Unit(benchmark::kMicrosecond);

/// The values stay the same; a load writes all registers, the 7168 of the knee table too.
void loadConfiguration(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const ScratchFile file;
    save(grabber, state, file);
    for (auto _ : state) load(grabber, state, file);
}
BENCHMARK(loadConfiguration)->Unit(benchmark::kMicrosecond);

void readConfiguration(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const ScratchFile file;
    save(grabber, state, file);
    for (auto _ : state) benchmark::DoNotOptimize(file.text());
}
BENCHMARK(readConfiguration)->Unit(benchmark::kMicrosecond);

/// Keys that the applet does not know stand between those that it looks for: the time may grow with their number only.
void loadAmongKeys(benchmark::State& state) {
    BenchGrabber grabber(emptyApplet());
    const ScratchFile file;
    save(grabber, state, file);
    std::string text = file.text();
    const size_t head = text.find("[Port A]\n") + 9;
    std::ostringstream others;
    for (int64_t key = 0; key < state.range(0); ++key) others << "FG_UNKNOWN_" << key << "=" << key << ";\n";
    file.write(text.insert(head, others.str()));
    for (auto _ : state) load(grabber, state, file);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(loadAmongKeys)
    ->RangeMultiplier(4)
    ->Range(1024, 65536)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond);

}  // namespace
