#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "simulation/board/Picture.h"

namespace simulation {

/// What the camera looks at: an endless row of frames of one size. Owned by the camera; one thread at a time.
class PictureSource {
public:
    PictureSource() = default;
    virtual ~PictureSource() = default;
    PictureSource(const PictureSource&) = delete;
    PictureSource& operator=(const PictureSource&) = delete;

    [[nodiscard]] virtual PictureSize size() const = 0;

    /// Frame \p number, counted from 1; borrowed until the next call.
    [[nodiscard]] virtual const Picture& frame(uint64_t number) = 0;
};

/// The pictures of a folder in the order of their names, again and again.
class PictureFolder : public PictureSource {
public:
    /// Reads all pictures of \p folder; the first one sets the size. \return null with \p why where the folder holds
    /// no pictures, a broken one, one of another size, or more than memory should hold.
    [[nodiscard]] static std::unique_ptr<PictureFolder> open(const std::filesystem::path& folder, std::string& why);

    [[nodiscard]] PictureSize size() const override { return mPictures.front().size; }
    [[nodiscard]] const Picture& frame(uint64_t number) override;

private:
    std::vector<Picture> mPictures;  // at least one
};

}  // namespace simulation
