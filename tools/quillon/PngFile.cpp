#include "PngFile.h"

#include <png.h>
#include <zlib.h>

#include <array>
#include <cmath>
#include <vector>

namespace quillon::tool {

namespace {

/// Filter and compressor of a picture.
struct Coding {
    int filters;
    int level;
    int strategy;
};
constexpr Coding kStored{PNG_FILTER_NONE, Z_NO_COMPRESSION, Z_DEFAULT_STRATEGY};
/// Differences of neighbours, runs and Huffman codes, no search for matches.
constexpr Coding kFast{PNG_FILTER_SUB, Z_BEST_SPEED, Z_RLE};
/// None of these is the best for every picture: matches shrink what repeats itself and blow up what is noisy.
constexpr std::array kSmall{
    Coding{PNG_ALL_FILTERS, 6,            Z_FILTERED},
    Coding{PNG_FILTER_AVG,  Z_BEST_SPEED, Z_RLE     },
    kFast,
};

/// Bits that a pixel takes after Huffman coding, above which time is better spent on the next picture.
constexpr double kWorthCoding = 6;
/// Lines between two that are looked at.
constexpr uint32_t kLineStep = 16;

/// Estimates the bits that a pixel takes: the entropy of the differences of neighbours in some of the lines.
double bitsPerPixel(const Picture& picture) {
    std::array<uint32_t, 256> counts{};
    for (uint32_t y = 0; y < picture.height; y += kLineStep) {
        const auto line = picture.pixels.subspan(size_t{y} * picture.width, picture.width);
        uint8_t left = 0;
        for (const std::byte pixel : line) {
            const auto value = std::to_integer<uint8_t>(pixel);
            ++counts[static_cast<uint8_t>(value - left)];
            left = value;
        }
    }
    double total = 0;
    for (const uint32_t count : counts) total += count;
    double bits = 0;
    for (const uint32_t count : counts) {
        if (count != 0) bits -= count / total * std::log2(count / total);
    }
    return bits;
}

using Bytes = std::vector<std::byte>;

void append(png_struct* png, png_byte* data, size_t size) {
    auto& bytes = *static_cast<Bytes*>(png_get_io_ptr(png));
    const auto* from = reinterpret_cast<const std::byte*>(data);
    bytes.insert(bytes.end(), from, from + size);
}

void encode(png_struct* png, png_info* info, const Picture& picture, const Coding& coding) {
    png_set_IHDR(png, info, picture.width, picture.height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, coding.filters);
    png_set_compression_level(png, coding.level);
    png_set_compression_strategy(png, coding.strategy);
    png_set_compression_buffer_size(png, size_t{1} << 17);
    png_write_info(png, info);
    const auto* row = reinterpret_cast<const png_byte*>(picture.pixels.data());
    for (uint32_t y = 0; y < picture.height; ++y) png_write_row(png, row + size_t{y} * picture.width);
    png_write_end(png, info);
}

void ignoreMessage(png_struct*, const char*) {}

void leaveEncoder(png_struct* png, const char*) { png_longjmp(png, 1); }

/// \return whether the encoder ran to its end
bool encodeInto(Bytes& bytes, const Picture& picture, const Coding& coding) {
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
    png_set_write_fn(png, &bytes, append, nullptr);
    encode(png, info, picture, coding);
    png_destroy_write_struct(&png, &info);
    return true;
}

bool encodeSmall(Bytes& best, const Picture& picture) {
    Bytes bytes;
    for (const Coding& coding : kSmall) {
        bytes.clear();
        if (!encodeInto(bytes, picture, coding)) return false;
        if (best.empty() || bytes.size() < best.size()) best.swap(bytes);
    }
    return true;
}

}  // namespace

bool writePng(FILE* file, const Picture& picture, PngEffort effort) {
    Bytes bytes;
    bytes.reserve(picture.pixels.size() + picture.pixels.size() / 8);
    const bool isEncoded = effort == PngEffort::Small
                               ? encodeSmall(bytes, picture)
                               : encodeInto(bytes, picture, bitsPerPixel(picture) > kWorthCoding ? kStored : kFast);
    return isEncoded && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

}  // namespace quillon::tool
