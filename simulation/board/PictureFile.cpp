#include "simulation/board/PictureFile.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "simulation/board/PngDecoder.h"
#include "simulation/support/Files.h"
#include "simulation/support/Numbers.h"

namespace simulation {

namespace fs = std::filesystem;

namespace {

constexpr uintmax_t kLargestFile = uintmax_t{1} << 30;

std::string extensionOf(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension;
}

/// Takes the words of a PGM header, which blanks and comments separate.
class PgmHeader {
public:
    explicit PgmHeader(const std::vector<uint8_t>& bytes) : mBytes(bytes) {}

    [[nodiscard]] std::string word() {
        while (mNext < mBytes.size() && (isBlank() || mBytes[mNext] == '#')) skipBlankOrComment();
        std::string text;
        while (mNext < mBytes.size() && !isBlank() && text.size() < 16) text += static_cast<char>(mBytes[mNext++]);
        return text;
    }

    /// Where the pixels start: after the one blank that ends the header.
    [[nodiscard]] size_t pixelOffset() const { return std::min(mNext + 1, mBytes.size()); }

private:
    [[nodiscard]] bool isBlank() const { return std::isspace(mBytes[mNext]) != 0; }

    void skipBlankOrComment() {
        if (mBytes[mNext] == '#') {
            while (mNext < mBytes.size() && mBytes[mNext] != '\n') ++mNext;
        } else {
            ++mNext;
        }
    }

    const std::vector<uint8_t>& mBytes;
    size_t mNext = 0;
};

std::optional<Picture> decodePgm(const std::vector<uint8_t>& bytes, std::string& why) {
    PgmHeader header(bytes);
    if (header.word() != "P5") {
        why = "not a binary PGM picture (P5)";
        return std::nullopt;
    }
    const auto width = parseNumber<uint32_t>(header.word());
    const auto height = parseNumber<uint32_t>(header.word());
    const auto maximum = parseNumber<uint32_t>(header.word());
    if (!width || !height || !maximum || *width < 1 || *height < 1 || *width > kLargestSide || *height > kLargestSide) {
        why = "the header is damaged";
        return std::nullopt;
    }
    if (*maximum != 255) {
        why = "the maximum is " + std::to_string(*maximum) + ", 8-bit gray with maximum 255 is wanted";
        return std::nullopt;
    }
    Picture picture{
        {*width, *height},
        {}
    };
    const size_t start = header.pixelOffset();
    if (picture.size.pixels() > bytes.size() - start) {
        why = "the file ends before its last line";
        return std::nullopt;
    }
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    picture.pixels.assign(first, first + static_cast<std::ptrdiff_t>(picture.size.pixels()));
    return picture;
}

}  // namespace

bool isPictureFile(const fs::path& path) {
    const std::string extension = extensionOf(path);
    return extension == ".png" || extension == ".pgm";
}

std::optional<Picture> readPictureFile(const fs::path& path, std::string& why) {
    const auto bytes = readFile(path, kLargestFile);
    std::optional<Picture> picture;
    if (!bytes) {
        why = "cannot be read";
    } else if (bytes->empty()) {
        why = "the file is empty";
    } else {
        picture = extensionOf(path) == ".pgm" ? decodePgm(*bytes, why) : decodePng(*bytes, why);
    }
    if (!picture) why = path.string() + ": " + why;
    return picture;
}

}  // namespace simulation
