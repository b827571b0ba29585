#include "simulation/board/PictureSource.h"

#include <algorithm>

#include "simulation/board/PictureFile.h"

namespace simulation {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> listPictures(const fs::path& folder, std::string& why) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (isPictureFile(entry->path())) files.push_back(entry->path());
    }
    if (error) {
        why = folder.string() + ": the picture folder cannot be read: " + error.message();
    } else if (files.empty()) {
        why = folder.string() + ": the folder holds no PNG or PGM pictures";
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string textOf(PictureSize size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

}  // namespace

std::unique_ptr<PictureFolder> PictureFolder::open(const fs::path& folder, std::string& why) {
    why.clear();
    const std::vector<fs::path> files = listPictures(folder, why);
    if (!why.empty()) return nullptr;
    auto source = std::make_unique<PictureFolder>();
    uint64_t pixels = 0;
    for (const fs::path& file : files) {
        auto picture = readPictureFile(file, why);
        if (!picture) return nullptr;
        if (!source->mPictures.empty() && picture->size != source->size()) {
            why = file.string() + ": the picture is " + textOf(picture->size) + ", the first one, " +
                  files.front().filename().string() + ", is " + textOf(source->size()) +
                  "; all pictures of a camera have one size";
            return nullptr;
        }
        pixels += picture->size.pixels();
        if (pixels > kMostPixels) {
            why = folder.string() + ": the pictures have more than " + std::to_string(kMostPixels) +
                  " pixels together; take fewer or smaller ones";
            return nullptr;
        }
        source->mPictures.push_back(std::move(*picture));
    }
    return source;
}

const Picture& PictureFolder::frame(uint64_t number) {
    return mPictures[static_cast<size_t>((number - 1) % mPictures.size())];
}

}  // namespace simulation
