// Does the same again and again for a long time, over the software board, and looks whether memory or descriptors grow.
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "host/Acquisition.h"
#include "host/AppletLibrary.h"
#include "host/BufferSet.h"
#include "host/Grabber.h"
#include "host/ParameterCatalogue.h"

namespace {

using namespace quillon::host;
using Clock = std::chrono::steady_clock;

// What a stage may grow by after its warm-up. The heap is counted to the byte where the allocator keeps no caches
// (GLIBC_TUNABLES=glibc.malloc.tcache_count=0); a cache that fills looks like growth.
constexpr long kMostRssGrowth = 1024;   // KiB
constexpr long kMostHeapGrowth = 1024;  // bytes
constexpr long kLeastWarmUp = 20;       // rounds
constexpr int kPictures = 100;

const char* const kApplet = QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so";

void expect(bool holds, const std::string& what) {
    if (!holds) throw std::runtime_error("does not hold: " + what);
}

/// What the process holds at this moment.
struct Holding {
    long rss = 0;   // KiB
    long heap = 0;  // bytes
    long descriptors = 0;

    static Holding now() {
        Holding holding;
        long pages = 0;
        std::ifstream("/proc/self/statm") >> pages >> holding.rss;
        holding.rss *= sysconf(_SC_PAGESIZE) / 1024;
        const struct mallinfo2 info = mallinfo2();
        holding.heap = static_cast<long>(info.uordblks + info.hblkhd);
        const std::filesystem::directory_iterator descriptors("/proc/self/fd");
        holding.descriptors = std::distance(begin(descriptors), end(descriptors));
        return holding;
    }
};

/// Writes of one grabber, of which some must be taken and some refused.
class Storm {
public:
    explicit Storm(const AppletLibrary& applet) : mGrabber(applet), mCatalogue(mGrabber) {
        expect(mGrabber.saveConfig("defaults.mcf") == FG_OK, "the defaults can be saved");
    }

    void round() {
        mTaken = mRefused = 0;
        for (const ParameterInfo& parameter : mCatalogue.parameters()) {
            switch (parameter.type) {
                case ParameterType::Integer:
                case ParameterType::Enumeration:
                    writeLimits<int32_t>(parameter);
                    break;
                case ParameterType::Double:
                    writeLimits<double>(parameter);
                    break;
                case ParameterType::Text:
                    count(mGrabber.write(parameter.id, std::string()));
                    count(mGrabber.write(parameter.id, std::string(500, 'x')));
                    break;
                case ParameterType::Structure:
                    break;
            }
        }
        expect(mTaken > 50 && mRefused > 50, "parameters take their limits and refuse what lies beyond");
        expect(mGrabber.saveConfig("storm.mcf") == FG_OK, "any state can be saved");
        expect(mGrabber.loadConfig("storm.mcf") == FG_OK, "what was saved can be loaded");
        expect(mGrabber.loadConfig("absent.mcf") != FG_OK, "a missing file is refused");
        expect(mGrabber.loadConfig("defaults.mcf") == FG_OK, "the defaults can be loaded");
    }

private:
    void count(int code) { ++(code == FG_OK ? mTaken : mRefused); }
    template <class Value>
    void writeLimits(const ParameterInfo& parameter) {
        Value least{};
        Value most{};
        if (mGrabber.limits(parameter.id, least, most) != FG_OK) return;
        // Beyond a limit in double, where one more than the largest integer is exact.
        const std::array<double, 5> values{double(least) - 1, double(most) + 1, double(most), double(least), 1e300};
        for (const double value : values) {
            const bool fits = std::is_same_v<Value, double> || (value >= INT32_MIN && value <= INT32_MAX);
            if (fits) count(mGrabber.write(parameter.id, static_cast<Value>(value)));
        }
    }

    Grabber mGrabber;
    ParameterCatalogue mCatalogue;
    int mTaken = 0;
    int mRefused = 0;
};

void acquire(const AppletLibrary& applet, AcquisitionMode mode) {
    static void* const library = dlopen(kApplet, RTLD_NOW | RTLD_NOLOAD);
    static const auto unlock =
        std::bit_cast<int (*)(FgDevice*, dma_mem*, frameindex_t)>(dlsym(library, "TavoUnlockBuffer"));
    constexpr int32_t kSide = 64;
    Grabber grabber(applet);
    expect(grabber.write(FG_WIDTH, kSide) == FG_OK && grabber.write(FG_HEIGHT, kSide) == FG_OK, "the window is set");
    const BufferSet buffers(grabber, size_t{kSide} * kSide, 4);
    Acquisition acquisition(grabber, buffers, kPictures, mode);
    for (frameindex_t picture = 1; picture <= kPictures; ++picture) {
        expect(acquisition.waitFor(picture, 10) >= picture, "picture " + std::to_string(picture) + " comes");
        if (mode != AcquisitionMode::Handshake) continue;
        expect(acquisition.frame(picture).length == size_t{kSide} * kSide, "the picture is complete");
        expect(unlock(grabber.device(), buffers.handle(), buffers.indexOf(picture)) == 0, "a buffer is handed back");
    }
    expect(acquisition.stop() == FG_OK, "the acquisition stops");
}

/// Repeats \p round for a time and at least so often, and prints a line of the table. \return whether nothing grew
bool stage(const char* name, double seconds, long leastRounds, const std::function<void()>& round) {
    const auto start = Clock::now();
    const auto elapsed = [start] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    long rounds = 0;
    for (; rounds < kLeastWarmUp || elapsed() < seconds / 5; ++rounds) round();
    const Holding before = Holding::now();
    const long warmUp = rounds;
    for (; rounds < leastRounds || rounds < 2 * kLeastWarmUp || elapsed() < seconds; ++rounds) round();
    const Holding after = Holding::now();
    const bool isFlat = after.rss - before.rss <= kMostRssGrowth && after.heap - before.heap <= kMostHeapGrowth &&
                        after.descriptors <= before.descriptors;
    std::printf("%-11s %8ld %7ld %7.1f %8ld %8ld %10ld %10ld %5ld %5ld  %s\n", name, rounds, warmUp, elapsed(),
                before.rss, after.rss, before.heap, after.heap, before.descriptors, after.descriptors,
                isFlat ? "flat" : "GREW");
    std::fflush(stdout);
    return isFlat;
}

bool soak(double seconds, long leastOpens) {
    const AppletLibrary applet(kApplet);
    const double share = seconds / 4;
    std::printf("%-11s %8s %7s %7s %17s %21s %11s\n", "stage", "rounds", "warm-up", "s", "RSS KiB", "heap bytes",
                "descriptors");
    bool isFlat = stage("open, close", share, leastOpens, [&] { const Grabber grabber(applet); });
    {
        Storm storm(applet);
        isFlat &= stage("parameters", share, 0, [&] { storm.round(); });
    }
    isFlat &= stage("continuous", share, 0, [&] { acquire(applet, AcquisitionMode::Continuous); });
    isFlat &= stage("hand-shake", share, 0, [&] { acquire(applet, AcquisitionMode::Handshake); });
    return isFlat;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        const double seconds = count > 1 ? std::stod(arguments[1]) : 60;
        const long leastOpens = count > 2 ? std::stol(arguments[2]) : 0;
        setenv("TAVO_SIM_MODE", "fast", 1);
        setenv("TAVO_SIM_SCENE", "64x64", 1);
        const auto folder = std::filesystem::temp_directory_path() / ("quillon-soak-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
        std::filesystem::current_path(folder);
        const bool isFlat = soak(seconds, leastOpens);
        std::filesystem::remove_all(folder);
        if (isFlat) return 0;
        std::fprintf(stderr, "soak: more than %ld KiB RSS, %ld bytes of heap or any descriptor was kept\n",
                     kMostRssGrowth, kMostHeapGrowth);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "soak: %s\n", problem.what());
    }
    return 1;
}
