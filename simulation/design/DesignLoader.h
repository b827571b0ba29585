#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <span>

#include "simulation/design/DesignHandle.h"

namespace simulation {

/// Loads designs and knows every handle that it has issued. Any thread may call it; a design stays as it is from
/// its loading to its unloading.
class DesignLoader {
public:
    /// Any board type will do.
    static constexpr int kAnyBoard = -1;

    DesignLoader() = default;
    DesignLoader(const DesignLoader&) = delete;
    DesignLoader& operator=(const DesignLoader&) = delete;

    /// Loads a design for \p boardType from an image. \return null for a damaged image or another board type.
    [[nodiscard]] fpga_design* load(std::span<const uint8_t> image, int boardType);

    /// The same from a file. A bare file name is looked up in the current folder, then in \p folder.
    [[nodiscard]] fpga_design* loadFile(const std::filesystem::path& name, const std::filesystem::path& folder,
                                        int boardType);

    /// \return false for a handle that is not loaded.
    [[nodiscard]] bool unload(fpga_design* handle);

    /// The design behind \p handle, borrowed until it is unloaded; null for any other handle.
    [[nodiscard]] const Design* find(const fpga_design* handle) const;

    [[nodiscard]] bool isIdle() const;

private:
    struct Entry {
        std::unique_ptr<const Design> design;
        std::unique_ptr<fpga_design> handle;
    };

    mutable std::mutex mMutex;
    std::map<const fpga_design*, Entry> mLoaded;  // guarded by mMutex
    // Handles of unloaded designs stay readable for a while, so that a late use is refused and not a stray read.
    std::deque<std::unique_ptr<fpga_design>> mRetired;  // guarded by mMutex
};

}  // namespace simulation
