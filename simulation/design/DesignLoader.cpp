#include "simulation/design/DesignLoader.h"

#include <string>

#include "simulation/design/DesignImage.h"
#include "simulation/support/Files.h"

namespace simulation {

namespace fs = std::filesystem;

namespace {

constexpr size_t kRetiredHandles = 64;
constexpr uintmax_t kLargestFile = 256u << 20;

}  // namespace

fpga_design* DesignLoader::load(std::span<const uint8_t> image, int boardType) {
    std::string why;
    auto parsed = parseImage(image, why);
    if (!parsed) return nullptr;
    if (boardType != kAnyBoard && parsed->boardType != static_cast<uint32_t>(boardType)) return nullptr;

    Entry entry{std::make_unique<const Design>(std::move(*parsed)), nullptr};
    const std::lock_guard lock(mMutex);
    if (mRetired.size() >= kRetiredHandles) {
        entry.handle = std::move(mRetired.front());
        mRetired.pop_front();
    } else {
        entry.handle = std::make_unique<fpga_design>();
    }
    fpga_design* const handle = entry.handle.get();
    *handle = {fpga_design::kMagic, fpga_design::kVersion, handle, entry.design.get()};
    mLoaded.emplace(handle, std::move(entry));
    return handle;
}

fpga_design* DesignLoader::loadFile(const fs::path& name, const fs::path& folder, int boardType) {
    auto bytes = readFile(name, kLargestFile);
    if (!bytes && !name.has_parent_path() && !folder.empty()) bytes = readFile(folder / name, kLargestFile);
    return bytes ? load(*bytes, boardType) : nullptr;
}

bool DesignLoader::unload(fpga_design* handle) {
    const std::lock_guard lock(mMutex);
    const auto found = mLoaded.find(handle);
    if (found == mLoaded.end()) return false;
    *found->second.handle = {};
    mRetired.push_back(std::move(found->second.handle));
    mLoaded.erase(found);
    return true;
}

const Design* DesignLoader::find(const fpga_design* handle) const {
    const std::lock_guard lock(mMutex);
    return mLoaded.contains(handle) ? fpga_design::designOf(handle) : nullptr;
}

bool DesignLoader::isIdle() const {
    const std::lock_guard lock(mMutex);
    return mLoaded.empty();
}

}  // namespace simulation
