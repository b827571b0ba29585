#include "Memory.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <optional>

namespace quillon::tool {

namespace {

std::optional<uint64_t> numberInFile(const char* path) {
    std::ifstream file(path);
    uint64_t number = 0;
    if (file >> number) return number;
    return std::nullopt;  // no such file, or the word "max"
}

uint64_t freeInMachine() {
    std::ifstream file("/proc/meminfo");
    std::string key;
    uint64_t kibibytes = 0;
    std::string unit;
    while (file >> key >> kibibytes) {
        if (key == "MemAvailable:") return kibibytes * 1024;
        std::getline(file, unit);
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages < 0 || pageSize < 0) return std::numeric_limits<uint64_t>::max();
    return static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize);
}

uint64_t freeInControlGroup() {
    const auto limit = numberInFile("/sys/fs/cgroup/memory.max");
    const auto used = numberInFile("/sys/fs/cgroup/memory.current");
    if (!limit || !used) return std::numeric_limits<uint64_t>::max();
    return *limit > *used ? *limit - *used : 0;
}

}  // namespace

uint64_t availableMemory() { return std::min(freeInMachine(), freeInControlGroup()); }

std::string formatBytes(double bytes) {
    constexpr std::array kUnits{"bytes", "kB", "MB", "GB", "TB", "PB", "EB"};
    size_t unit = 0;
    while (bytes >= 1000 && unit + 1 < kUnits.size()) {
        bytes /= 1000;
        ++unit;
    }
    return unit == 0 ? fmt::format("{:.0f} {}", bytes, kUnits[unit]) : fmt::format("{:.1f} {}", bytes, kUnits[unit]);
}

}  // namespace quillon::tool
