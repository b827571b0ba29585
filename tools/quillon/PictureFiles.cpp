#include "PictureFiles.h"

#include <fmt/format.h>
#include <strings.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "ToolError.h"

namespace quillon::tool {

namespace {

constexpr int kMostDigits = 9;

struct FormatRow {
    const char* ending;
    PictureFormat format;
};
constexpr std::array kFormats{
    FormatRow{".png",  PictureFormat::Png },
    FormatRow{".pgm",  PictureFormat::Pgm },
    FormatRow{".tif",  PictureFormat::Tiff},
    FormatRow{".tiff", PictureFormat::Tiff},
    FormatRow{".raw",  PictureFormat::Raw },
};

[[noreturn]] void refusePattern(const std::string& pattern, const char* why) {
    throw ToolError(kExitUsage,
                    fmt::format("the output '{}' cannot be used: {}; for example out/frame_%03d.png", pattern, why));
}

bool writeRaw(FILE* file, const Picture& picture) {
    return std::fwrite(picture.pixels.data(), 1, picture.pixels.size(), file) == picture.pixels.size();
}

bool writePgm(FILE* file, const Picture& picture) {
    return std::fprintf(file, "P5\n%u %u\n255\n", picture.width, picture.height) > 0 && writeRaw(file, picture);
}

}  // namespace

PictureFiles::Stack::Stack(const std::filesystem::path& path, bool isLarge)
    : file(path), pages(file.stream(), isLarge) {
    // Nothing of a picture that failed may wait for a later write.
    std::setvbuf(file.stream(), nullptr, _IONBF, 0);
}

PictureFiles::PictureFiles(const std::string& pattern, PngEffort effort) : mEffort(effort) {
    parse(pattern);
    const std::string ending = path(1).extension().string();
    for (const FormatRow& row : kFormats) {
        if (strcasecmp(ending.c_str(), row.ending) != 0) continue;
        mFormat = row.format;
        return;
    }
    refusePattern(pattern, "its ending is none of .png, .pgm, .tif, .tiff and .raw");
}

void PictureFiles::parse(const std::string& pattern) {
    for (size_t i = 0; i < pattern.size(); ++i) {
        std::string& text = mIsNumbered ? mAfter : mBefore;
        if (pattern[i] != '%') {
            text += pattern[i];
            continue;
        }
        ++i;
        if (i < pattern.size() && pattern[i] == '%') {
            text += '%';
            continue;
        }
        int digits = 0;
        while (i < pattern.size() && std::isdigit(static_cast<unsigned char>(pattern[i])) != 0 &&
               digits <= kMostDigits) {
            digits = digits * 10 + (pattern[i++] - '0');
        }
        if (i >= pattern.size() || pattern[i] != 'd') refusePattern(pattern, "after % comes d, a number and d, or %");
        if (digits > kMostDigits) refusePattern(pattern, "a number has at most nine digits");
        if (mIsNumbered) refusePattern(pattern, "it has more than one place for the number");
        mIsNumbered = true;
        mDigits = digits;
    }
}

std::filesystem::path PictureFiles::path(int number) const {
    if (!mIsNumbered) return mBefore;
    return fmt::format("{}{:0{}}{}", mBefore, number, mDigits, mAfter);
}

std::filesystem::path PictureFiles::folder() const {
    const std::filesystem::path parent = path(1).parent_path();
    return parent.empty() ? "." : parent;
}

void PictureFiles::prepareFolder() const {
    std::error_code problem;
    std::filesystem::create_directories(folder(), problem);
    if (problem) {
        throw ToolError(kExitEnvironment,
                        fmt::format("cannot create the output folder {}: {}", folder().string(), problem.message()));
    }
    if (access(folder().c_str(), W_OK | X_OK) != 0) {
        throw ToolError(kExitEnvironment, fmt::format("cannot write into the output folder {}: {}", folder().string(),
                                                      std::strerror(errno)));
    }
}

bool PictureFiles::encode(FILE* file, const Picture& picture) const {
    switch (mFormat) {
        case PictureFormat::Png:
            return writePng(file, picture, mEffort);
        case PictureFormat::Pgm:
            return writePgm(file, picture);
        case PictureFormat::Tiff:
            return TiffPages(file, false).append(picture);
        case PictureFormat::Raw:
            break;
    }
    return writeRaw(file, picture);
}

void PictureFiles::write(int number, const Picture& picture) {
    if (isOneFileForAll()) {
        append(picture);
        return;
    }
    const std::filesystem::path target = path(number);
    NewFile file(target);
    errno = 0;
    if (!encode(file.stream(), picture)) refuseFile(target, errno == 0 ? EINVAL : errno);
    file.complete();
}

void PictureFiles::append(const Picture& picture) {
    if (!mStack) mStack.emplace(path(1), mIsLarge);
    FILE* file = mStack->file.stream();
    errno = 0;
    const bool isWritten = mFormat == PictureFormat::Tiff ? mStack->pages.append(picture) : writeRaw(file, picture);
    const int problem = errno == 0 ? EIO : errno;
    if (isWritten && fseeko(file, 0, SEEK_END) == 0) {
        mStack->end = ftello(file);
        return;
    }
    std::clearerr(file);
    if (mStack->end == 0 || ftruncate(fileno(file), mStack->end) != 0) mStack.reset();
    refuseFile(path(1), problem);
}

void PictureFiles::complete() {
    if (!mStack) return;
    mStack->file.complete();
    mStack.reset();
}

}  // namespace quillon::tool
