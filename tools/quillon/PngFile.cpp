#include "PngFile.h"

#include <png.h>
#include <zlib.h>

#include <array>
#include <string_view>
#include <vector>

#include "FastDeflate.h"

namespace quillon::tool {

namespace {

/// Filter and compressor of a picture.
struct Coding {
    int filters;
    int level;
    int strategy;
};
/// None of these is the best for every picture: matches shrink what repeats itself and blow up what is noisy.
constexpr std::array kSmall{
    Coding{PNG_ALL_FILTERS, 6,            Z_FILTERED},
    Coding{PNG_FILTER_AVG,  Z_BEST_SPEED, Z_RLE     },
    Coding{PNG_FILTER_SUB,  Z_BEST_SPEED, Z_RLE     },
};

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

void appendNumber(Bytes& bytes, uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::byte>(number >> shift));
}

void appendText(Bytes& bytes, std::string_view text) {
    for (const char letter : text) bytes.push_back(static_cast<std::byte>(letter));
}

/// Appends a chunk of the file; \p fill appends its content.
template <class Fill>
void appendChunk(Bytes& bytes, std::string_view type, const Fill& fill) {
    const size_t start = bytes.size();
    appendNumber(bytes, 0);
    appendText(bytes, type);
    fill();
    const size_t length = bytes.size() - start - 8;
    for (size_t i = 0; i < 4; ++i) bytes[start + i] = static_cast<std::byte>(length >> (24 - 8 * i));
    const auto* checked = reinterpret_cast<const png_byte*>(&bytes[start + 4]);
    appendNumber(bytes, static_cast<uint32_t>(crc32_z(0, checked, length + 4)));
}

/// \return the lines of the picture, each led by its filter, as differences of neighbours
std::vector<uint8_t> differences(const Picture& picture) {
    constexpr uint8_t kSubFilter = 1;
    std::vector<uint8_t> lines((size_t{picture.width} + 1) * picture.height);
    const auto* from = reinterpret_cast<const uint8_t*>(picture.pixels.data());
    uint8_t* to = lines.data();
    for (uint32_t y = 0; y < picture.height; ++y, from += picture.width) {
        *to++ = kSubFilter;
        *to++ = *from;
        for (uint32_t x = 1; x < picture.width; ++x) *to++ = static_cast<uint8_t>(from[x] - from[x - 1]);
    }
    return lines;
}

void encodeFast(Bytes& bytes, const Picture& picture) {
    appendText(bytes, "\x89PNG\r\n\x1a\n");
    appendChunk(bytes, "IHDR", [&] {
        appendNumber(bytes, picture.width);
        appendNumber(bytes, picture.height);
        for (const int value :
             {8, PNG_COLOR_TYPE_GRAY, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE, PNG_INTERLACE_NONE}) {
            bytes.push_back(static_cast<std::byte>(value));
        }
    });
    appendChunk(bytes, "IDAT", [&] { deflateFast(differences(picture), bytes); });
    appendChunk(bytes, "IEND", [] {});
}

}  // namespace

bool writePng(FILE* file, const Picture& picture, PngEffort effort) {
    Bytes bytes;
    bytes.reserve(picture.pixels.size() + picture.pixels.size() / 8);
    if (effort == PngEffort::Fast) {
        encodeFast(bytes, picture);
    } else if (!encodeSmall(bytes, picture)) {
        return false;
    }
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

}  // namespace quillon::tool
