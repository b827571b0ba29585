#include "simulation/board/PngDecoder.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <vector>

namespace simulation {

namespace {

/// What the callbacks of the PNG library see.
struct Source {
    std::span<const uint8_t> rest;
    std::string error;
};

void readBytes(png_structp png, png_bytep target, size_t count) {
    auto* const source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->rest.size()) png_error(png, "the file ends too early");
    std::copy_n(source->rest.begin(), count, target);
    source->rest = source->rest.subspan(count);
}

[[noreturn]] void keepError(png_structp png, png_const_charp text) {
    static_cast<Source*>(png_get_error_ptr(png))->error = text;
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*text*/) {}

/// The decoder and what it knows of the picture, released together.
class Decoder {
public:
    explicit Decoder(Source& source)
        : mPng(png_create_read_struct(PNG_LIBPNG_VER_STRING, &source, keepError, ignoreWarning)) {
        if (mPng == nullptr) return;
        mInfo = png_create_info_struct(mPng);
        png_set_read_fn(mPng, &source, readBytes);
        png_set_user_limits(mPng, kLargestSide, kLargestSide);
    }
    ~Decoder() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    [[nodiscard]] bool isValid() const { return mPng != nullptr && mInfo != nullptr; }

    /// Reads the header and asks for plain 8-bit gray. A fault of the file jumps back here: no object with a
    /// destructor may live in this function.
    [[nodiscard]] bool readHeader(PictureSize& size) {
        if (setjmp(png_jmpbuf(mPng)) != 0) return false;
        png_read_info(mPng, mInfo);
        png_set_expand(mPng);
        png_set_scale_16(mPng);
        png_set_strip_alpha(mPng);
        if ((png_get_color_type(mPng, mInfo) & PNG_COLOR_MASK_COLOR) != 0) {
            constexpr png_fixed_point kUsualWeight = -1;
            png_set_rgb_to_gray_fixed(mPng, PNG_ERROR_ACTION_NONE, kUsualWeight, kUsualWeight);
        }
        png_set_interlace_handling(mPng);
        png_read_update_info(mPng, mInfo);
        size = {png_get_image_width(mPng, mInfo), png_get_image_height(mPng, mInfo)};
        return true;
    }

    /// Reads all lines into \p lines, under the same rule as readHeader.
    [[nodiscard]] bool readLines(uint8_t** lines) {
        if (setjmp(png_jmpbuf(mPng)) != 0) return false;
        png_read_image(mPng, lines);
        png_read_end(mPng, nullptr);
        return true;
    }

    [[nodiscard]] size_t bytesPerLine() const { return png_get_rowbytes(mPng, mInfo); }

private:
    png_structp mPng;
    png_infop mInfo = nullptr;
};

}  // namespace

std::optional<Picture> decodePng(std::span<const uint8_t> file, std::string& why) {
    Source source{file, {}};
    Decoder decoder(source);
    Picture picture;
    if (!decoder.isValid()) {
        why = "out of memory";
        return std::nullopt;
    }
    if (!decoder.readHeader(picture.size)) {
        why = "not a sound PNG picture: " + source.error;
        return std::nullopt;
    }
    if (decoder.bytesPerLine() != picture.size.width || picture.size.pixels() > kMostPixels) {
        why = "the picture is too large";
        return std::nullopt;
    }
    picture.pixels.resize(static_cast<size_t>(picture.size.pixels()));
    std::vector<uint8_t*> lines(picture.size.height);
    for (uint32_t y = 0; y < picture.size.height; ++y) lines[y] = picture.line(y);
    if (!decoder.readLines(lines.data())) {
        why = "not a sound PNG picture: " + source.error;
        return std::nullopt;
    }
    return picture;
}

}  // namespace simulation
