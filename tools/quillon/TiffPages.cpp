#include "TiffPages.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace quillon::tool {

namespace {

static_assert(std::endian::native == std::endian::little, "the files are little-endian");

/// Types of a field's values.
constexpr uint16_t kShort = 3;
constexpr uint16_t kLong = 4;
constexpr uint16_t kLong8 = 16;

struct Field {
    uint16_t tag;
    uint16_t type;
    uint64_t value;
};

/// The bytes of a file in the making.
class Bytes {
public:
    template <class T>
    Bytes& add(T value) {
        mBytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
        return *this;
    }
    /// Adds a number in the width of the file's offsets.
    Bytes& addOffset(uint64_t value, bool isBig) { return isBig ? add(value) : add(static_cast<uint32_t>(value)); }
    std::string take() { return std::move(mBytes); }

private:
    std::string mBytes;
};

}  // namespace

std::string TiffPages::header() const {
    Bytes bytes;
    bytes.add('I').add('I');
    if (mIsBig) return bytes.add(uint16_t{43}).add(uint16_t{8}).add(uint16_t{0}).add(uint64_t{0}).take();
    return bytes.add(uint16_t{42}).add(uint32_t{0}).take();
}

std::string TiffPages::directory(const Picture& picture, uint64_t pixelsAt) const {
    const uint16_t offsetType = mIsBig ? kLong8 : kLong;
    const std::array fields{
        Field{256, kLong,      picture.width        }, // width
        Field{257, kLong,      picture.height       }, // height
        Field{258, kShort,     8                    }, // bits a sample
        Field{259, kShort,     1                    }, // not compressed
        Field{262, kShort,     1                    }, // black is 0
        Field{273, offsetType, pixelsAt             }, // where the only strip stands
        Field{277, kShort,     1                    }, // samples a pixel
        Field{278, kLong,      picture.height       }, // lines in the strip
        Field{279, offsetType, picture.pixels.size()}, // bytes of the strip
    };
    Bytes bytes;
    if (mIsBig) {
        bytes.add(uint64_t{fields.size()});
    } else {
        bytes.add(static_cast<uint16_t>(fields.size()));
    }
    for (const Field& field : fields) {
        bytes.add(field.tag).add(field.type).addOffset(1, mIsBig).addOffset(field.value, mIsBig);
    }
    return bytes.addOffset(0, mIsBig).take();
}

bool TiffPages::write(uint64_t at, const void* bytes, size_t size) {
    return fseeko(mFile, static_cast<off_t>(at), SEEK_SET) == 0 && std::fwrite(bytes, 1, size, mFile) == size;
}

bool TiffPages::append(const Picture& picture) {
    if (mEnd == 0) {
        const std::string start = header();
        if (!write(0, start.data(), start.size())) return false;
        mEnd = start.size();
        mLink = mEnd - offsetBytes();
    }
    // A directory begins at an even place.
    const uint64_t directoryAt = (mEnd + picture.pixels.size() + 1) / 2 * 2;
    const std::string page = directory(picture, mEnd);
    const uint64_t end = (directoryAt + page.size() + 1) / 2 * 2;
    if (!mIsBig && end > std::numeric_limits<uint32_t>::max()) {
        errno = EFBIG;
        return false;
    }
    if (!write(mEnd, picture.pixels.data(), picture.pixels.size()) || !write(directoryAt, page.data(), page.size()) ||
        std::fflush(mFile) != 0) {
        return false;
    }
    if (!write(mLink, &directoryAt, offsetBytes()) || std::fflush(mFile) != 0) return false;
    mLink = directoryAt + page.size() - offsetBytes();
    mEnd = end;
    return true;
}

}  // namespace quillon::tool
