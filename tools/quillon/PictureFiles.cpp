#include "PictureFiles.h"

#include <fmt/format.h>
#include <png.h>
#include <strings.h>
#include <unistd.h>
#include <zlib.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <tuple>

#include "FileBeside.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

constexpr int kMostDigits = 9;

[[noreturn]] void refusePattern(const std::string& pattern, const char* why) {
    throw ToolError(kExitUsage,
                    fmt::format("the output '{}' cannot be used: {}; for example out/frame_%03d.png", pattern, why));
}

void writePgm(FILE* file, const Picture& picture) {
    // A short write shows in the stream's error flag.
    std::ignore = std::fprintf(file, "P5\n%u %u\n255\n", picture.width, picture.height);
    std::ignore = std::fwrite(picture.pixels.data(), 1, picture.pixels.size(), file);
}

void encodePng(png_struct* png, png_info* info, FILE* file, const Picture& picture) {
    png_init_io(png, file);
    png_set_IHDR(png, info, picture.width, picture.height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    // Speed before size: differences of neighbours, runs and Huffman codes, no search for matches.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_set_compression_level(png, Z_BEST_SPEED);
    png_set_compression_strategy(png, Z_RLE);
    png_write_info(png, info);
    const auto* row = reinterpret_cast<const png_byte*>(picture.pixels.data());
    for (uint32_t y = 0; y < picture.height; ++y) png_write_row(png, row + size_t{y} * picture.width);
    png_write_end(png, info);
}

void ignoreMessage(png_struct*, const char*) {}

void leaveEncoder(png_struct* png, const char*) { png_longjmp(png, 1); }

/// \return whether the encoder ran to its end
bool writePng(FILE* file, const Picture& picture) {
    png_struct* png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, leaveEncoder, ignoreMessage);
    png_info* info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr) {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    encodePng(png, info, file, picture);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

PictureFiles::PictureFiles(const std::string& pattern) {
    parse(pattern);
    const std::filesystem::path name = path(1);
    const std::string ending = name.extension().string();
    if (strcasecmp(ending.c_str(), ".png") == 0) {
        mFormat = Format::Png;
    } else if (strcasecmp(ending.c_str(), ".pgm") == 0) {
        mFormat = Format::Pgm;
    } else {
        refusePattern(pattern, "its ending is neither .png nor .pgm");
    }
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

void PictureFiles::write(int number, const Picture& picture) const {
    const std::filesystem::path target = path(number);
    NewFile file(target);
    errno = 0;
    if (mFormat == Format::Pgm) {
        writePgm(file.stream(), picture);
    } else if (!writePng(file.stream(), picture)) {
        refuseFile(target, errno == 0 ? EINVAL : errno);
    }
    file.complete();
}

}  // namespace quillon::tool
