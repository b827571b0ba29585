#include "simulation/design/DesignImage.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace simulation {

namespace {

constexpr std::array<uint8_t, 8> kMagic{'Q', 'L', 'N', 'D', 0x1a, '\r', '\n', 0x00};
constexpr uint32_t kVersion = 1;
constexpr size_t kHeaderSize = 64;
constexpr size_t kChecksumOffset = 44;
constexpr size_t kReservedOffset = 48;
constexpr size_t kRegisterRowSize = 24;
constexpr size_t kUserInfoRowSize = 8;

/// Sixteen bytes a step: kCrcTables[k] holds what a byte contributes with k bytes behind it.
constexpr size_t kCrcStep = 16;
using CrcTables = std::array<std::array<uint32_t, 256>, kCrcStep>;

constexpr CrcTables makeCrcTables() {
    CrcTables tables{};
    for (uint32_t byte = 0; byte < 256; ++byte) {
        uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
        tables[0][byte] = crc;
    }
    for (size_t k = 1; k < kCrcStep; ++k) {
        for (size_t byte = 0; byte < 256; ++byte) {
            const uint32_t shorter = tables[k - 1][byte];
            tables[k][byte] = tables[0][shorter & 0xFF] ^ (shorter >> 8);
        }
    }
    return tables;
}

constexpr CrcTables kCrcTables = makeCrcTables();

uint32_t continueCrc(uint32_t crc, std::span<const uint8_t> bytes) {
    while (bytes.size() >= kCrcStep) {
        uint32_t next = 0;
        for (size_t i = 0; i < kCrcStep; ++i) {
            const uint32_t carried = i < sizeof(crc) ? crc >> (8 * i) : 0;
            next ^= kCrcTables[kCrcStep - 1 - i][(bytes[i] ^ carried) & 0xFF];
        }
        crc = next;
        bytes = bytes.subspan(kCrcStep);
    }
    for (const uint8_t byte : bytes) crc = kCrcTables[0][(crc ^ byte) & 0xFF] ^ (crc >> 8);
    return crc;
}

uint32_t checksumOf(std::span<const uint8_t> image) {
    constexpr std::array<uint8_t, 4> kEmptyField{};
    uint32_t crc = continueCrc(0xFFFFFFFFu, image.first(kChecksumOffset));
    crc = continueCrc(crc, kEmptyField);
    return ~continueCrc(crc, image.subspan(kChecksumOffset + kEmptyField.size()));
}

void putNumber(std::span<uint8_t> image, size_t offset, uint64_t value, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) image[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

void put32(std::span<uint8_t> image, size_t offset, size_t value) { putNumber(image, offset, value, 4); }

uint64_t getNumber(std::span<const uint8_t> image, size_t offset, size_t bytes) {
    uint64_t value = 0;
    for (size_t i = 0; i < bytes; ++i) value |= uint64_t{image[offset + i]} << (8 * i);
    return value;
}

uint32_t get32(std::span<const uint8_t> image, size_t offset) {
    return static_cast<uint32_t>(getNumber(image, offset, 4));
}

/// Where the parts of an image lie, as its header tells it.
struct Layout {
    uint32_t registerCount;
    uint32_t registerOffset;
    uint32_t userInfoCount;
    uint32_t userInfoOffset;
    uint32_t poolOffset;
    uint32_t poolSize;
};

bool fits(std::span<const uint8_t> image, uint64_t offset, uint64_t count, uint64_t rowSize) {
    return offset >= kHeaderSize && offset <= image.size() && count * rowSize <= image.size() - offset;
}

std::optional<std::string> textAt(std::span<const uint8_t> pool, uint32_t offset) {
    if (offset >= pool.size()) return std::nullopt;
    const auto rest = pool.subspan(offset);
    const auto end = std::find(rest.begin(), rest.end(), uint8_t{0});
    if (end == rest.end()) return std::nullopt;
    return std::string(rest.begin(), end);
}

std::string findHeaderFault(std::span<const uint8_t> image) {
    if (image.size() < kHeaderSize) return "the image is shorter than its header";
    if (!std::equal(kMagic.begin(), kMagic.end(), image.begin())) return "this is not a design image";
    if (get32(image, 8) != kVersion) return "the image has version " + std::to_string(get32(image, 8));
    if (get32(image, 12) != image.size()) {
        return "the image has " + std::to_string(image.size()) + " bytes and should have " +
               std::to_string(get32(image, 12));
    }
    if (get32(image, kChecksumOffset) != checksumOf(image)) return "the checksum is wrong";
    const auto reserved = image.subspan(kReservedOffset, kHeaderSize - kReservedOffset);
    if (std::any_of(reserved.begin(), reserved.end(), [](uint8_t byte) { return byte != 0; })) {
        return "a reserved field is in use";
    }
    return {};
}

bool readRegisters(std::span<const uint8_t> image, std::span<const uint8_t> pool, const Layout& layout,
                   Design& design) {
    for (uint32_t i = 0; i < layout.registerCount; ++i) {
        const auto row = image.subspan(layout.registerOffset + i * kRegisterRowSize, kRegisterRowSize);
        auto name = textAt(pool, get32(row, 0));
        if (!name) return false;
        design.registers.push_back({std::move(*name), get32(row, 4), get32(row, 8), getNumber(row, 16, 8)});
    }
    return true;
}

bool readUserInfos(std::span<const uint8_t> image, std::span<const uint8_t> pool, const Layout& layout,
                   Design& design) {
    for (uint32_t i = 0; i < layout.userInfoCount; ++i) {
        const auto row = image.subspan(layout.userInfoOffset + i * kUserInfoRowSize, kUserInfoRowSize);
        auto name = textAt(pool, get32(row, 0));
        auto value = textAt(pool, get32(row, 4));
        if (!name || !value) return false;
        design.userInfos.push_back({std::move(*name), std::move(*value)});
    }
    return true;
}

/// Collects the texts of an image and tells where each one starts.
class TextPool {
public:
    size_t add(const std::string& text) {
        const size_t offset = mTexts.size();
        mTexts.append(text.c_str(), text.size() + 1);
        return offset;
    }

    [[nodiscard]] const std::string& texts() const { return mTexts; }

private:
    std::string mTexts;
};

size_t poolOffsetOf(const Design& design) {
    return kHeaderSize + design.registers.size() * kRegisterRowSize + design.userInfos.size() * kUserInfoRowSize;
}

/// Stands in for the configuration data of a real chip: no meaning, but the same bytes in every build.
void putFiller(std::span<uint8_t> filler) {
    uint32_t state = 0x9E3779B9u;
    for (uint8_t& byte : filler) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<uint8_t>(state);
    }
}

}  // namespace

size_t imageSizeOf(const Design& design) {
    size_t size = poolOffsetOf(design);
    for (const RegisterInfo& row : design.registers) size += row.name.size() + 1;
    for (const UserInfo& row : design.userInfos) size += row.name.size() + row.value.size() + 2;
    return size;
}

std::vector<uint8_t> encodeImage(const Design& design, size_t size) {
    std::vector<uint8_t> image(std::max(size, imageSizeOf(design)));
    TextPool pool;
    size_t row = kHeaderSize;
    for (const RegisterInfo& info : design.registers) {
        put32(image, row, pool.add(info.name));
        put32(image, row + 4, info.width);
        put32(image, row + 8, info.direction);
        putNumber(image, row + 16, info.initialValue, 8);
        row += kRegisterRowSize;
    }
    const size_t userInfoOffset = row;
    for (const UserInfo& info : design.userInfos) {
        put32(image, row, pool.add(info.name));
        put32(image, row + 4, pool.add(info.value));
        row += kUserInfoRowSize;
    }
    std::copy(pool.texts().begin(), pool.texts().end(), image.begin() + static_cast<std::ptrdiff_t>(row));
    putFiller(std::span(image).subspan(row + pool.texts().size()));

    std::copy(kMagic.begin(), kMagic.end(), image.begin());
    const std::array<size_t, 9> fields{
        kVersion,       image.size(), design.boardType,   design.registers.size(), kHeaderSize, design.userInfos.size(),
        userInfoOffset, row,          pool.texts().size()};
    for (size_t i = 0; i < fields.size(); ++i) put32(image, kMagic.size() + 4 * i, fields[i]);
    put32(image, kChecksumOffset, checksumOf(image));
    return image;
}

std::optional<Design> parseImage(std::span<const uint8_t> image, std::string& why) {
    why = findHeaderFault(image);
    if (!why.empty()) return std::nullopt;
    const Layout layout{get32(image, 20), get32(image, 24), get32(image, 28),
                        get32(image, 32), get32(image, 36), get32(image, 40)};
    if (!fits(image, layout.registerOffset, layout.registerCount, kRegisterRowSize) ||
        !fits(image, layout.userInfoOffset, layout.userInfoCount, kUserInfoRowSize) ||
        !fits(image, layout.poolOffset, layout.poolSize, 1)) {
        why = "a table lies outside the image";
        return std::nullopt;
    }
    Design design;
    design.boardType = get32(image, 16);
    const auto pool = image.subspan(layout.poolOffset, layout.poolSize);
    if (!readRegisters(image, pool, layout, design) || !readUserInfos(image, pool, layout, design)) {
        why = "a text lies outside the image";
        return std::nullopt;
    }
    why = findFault(design);
    if (!why.empty()) return std::nullopt;
    return design;
}

std::string findFault(const Design& design) {
    std::map<std::string_view, bool> names;
    for (const RegisterInfo& row : design.registers) {
        if (row.name.empty()) return "a register has no name";
        const std::string prefix = "register " + row.name + ": ";
        if (!names.emplace(row.name, true).second) return prefix + "the name is used twice";
        if (row.width < 1 || row.width > 64) return prefix + "the width is not 1 to 64 bits";
        if (row.direction != kDirectionWrite && row.direction != kDirectionRead) {
            return prefix + "the direction is neither write nor read";
        }
        if (maskToWidth(row.initialValue, row.width) != row.initialValue) {
            return prefix + "the initial value does not fit the width";
        }
    }
    names.clear();
    for (const UserInfo& row : design.userInfos) {
        if (row.name.empty()) return "a user information has no name";
        if (!names.emplace(row.name, true).second) return "user information " + row.name + ": the name is used twice";
    }
    return {};
}

}  // namespace simulation
