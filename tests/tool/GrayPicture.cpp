#include "tool/GrayPicture.h"

#include <png.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

namespace tooltest {

namespace {

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};

/// The state of the PNG library for one file.
struct PngReader {
    PngReader() = default;
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }

    static void fail(png_struct*, const char* text) { throw std::runtime_error(text); }

    png_struct* png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr);
    png_info* info = png_create_info_struct(png);
};

/// Row by row with the full library, so that nothing is converted on the way.
GrayPicture readPng(const std::filesystem::path& path) {
    const std::unique_ptr<FILE, CloseFile> file(fopen(path.c_str(), "rb"));
    if (!file) throw std::runtime_error("cannot open " + path.string());
    PngReader reader;
    png_init_io(reader.png, file.get());
    png_read_info(reader.png, reader.info);
    if (png_get_color_type(reader.png, reader.info) != PNG_COLOR_TYPE_GRAY ||
        png_get_bit_depth(reader.png, reader.info) != 8 ||
        png_get_interlace_type(reader.png, reader.info) != PNG_INTERLACE_NONE) {
        throw std::runtime_error("no plain gray picture: " + path.string());
    }
    GrayPicture picture;
    picture.width = png_get_image_width(reader.png, reader.info);
    picture.height = png_get_image_height(reader.png, reader.info);
    picture.pixels.resize(size_t{picture.width} * picture.height);
    for (uint32_t y = 0; y < picture.height; ++y) {
        png_read_row(reader.png, picture.pixels.data() + size_t{y} * picture.width, nullptr);
    }
    png_read_end(reader.png, nullptr);
    return picture;
}

GrayPicture readPgm(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string magic;
    GrayPicture picture;
    uint32_t largest = 0;
    file >> magic >> picture.width >> picture.height >> largest;
    if (!file || magic != "P5" || largest != 255 || file.get() != '\n') {
        throw std::runtime_error("no PGM of 8 bits: " + path.string());
    }
    picture.pixels.resize(size_t{picture.width} * picture.height);
    file.read(reinterpret_cast<char*>(picture.pixels.data()), static_cast<std::streamsize>(picture.pixels.size()));
    if (!file || file.peek() != std::ifstream::traits_type::eof()) {
        throw std::runtime_error("wrong length: " + path.string());
    }
    return picture;
}

}  // namespace

GrayPicture GrayPicture::crop(uint32_t x, uint32_t y, uint32_t w, uint32_t h) const {
    GrayPicture part{w, h, std::vector<uint8_t>(size_t{w} * h)};
    for (uint32_t row = 0; row < h && y + row < height; ++row) {
        for (uint32_t column = 0; column < w && x + column < width; ++column) {
            part.pixels[size_t{row} * w + column] = pixels[size_t{y + row} * width + x + column];
        }
    }
    return part;
}

GrayPicture readPicture(const std::filesystem::path& path) {
    return path.extension() == ".pgm" ? readPgm(path) : readPng(path);
}

std::vector<GrayPicture> readFolder(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string ending = entry.path().extension();
        if (ending == ".png" || ending == ".pgm") paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    std::vector<GrayPicture> pictures;
    for (const auto& path : paths) pictures.push_back(readPicture(path));
    return pictures;
}

void writePgm(const std::filesystem::path& path, const GrayPicture& picture) {
    std::ofstream file(path, std::ios::binary);
    file << "P5\n" << picture.width << ' ' << picture.height << "\n255\n";
    file.write(reinterpret_cast<const char*>(picture.pixels.data()),
               static_cast<std::streamsize>(picture.pixels.size()));
    if (!file) throw std::runtime_error("cannot write " + path.string());
}

GrayPicture makeTexture(uint32_t width, uint32_t height, uint32_t seed) {
    GrayPicture picture{width, height, {}};
    picture.pixels.reserve(size_t{width} * height);
    uint32_t state = seed * 2654435761U + 1;
    for (size_t i = 0; i < size_t{width} * height; ++i) {
        state = state * 1664525U + 1013904223U;
        picture.pixels.push_back(static_cast<uint8_t>(state >> 24));
    }
    return picture;
}

std::string writeTextures(const std::filesystem::path& folder, uint32_t count, uint32_t width, uint32_t height) {
    std::filesystem::create_directory(folder);
    for (uint32_t i = 0; i < count; ++i) {
        writePgm(folder / ("t" + std::to_string(i) + ".pgm"), makeTexture(width, height, i));
    }
    return folder.string();
}

}  // namespace tooltest
