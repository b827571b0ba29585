#include "simulation/design/DesignImage.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace simulation {

namespace {

constexpr std::array<uint8_t, 8> kMagic{'Q', 'L', 'N', 'D', 0x1a, '\r', '\n', 0x00};
constexpr uint32_t kVersion = 2;
constexpr size_t kHeaderSize = 64;
constexpr size_t kChecksumOffset = 44;
constexpr size_t kReservedOffset = 48;
constexpr size_t kRegisterRowSize = 24;
constexpr size_t kUserInfoRowSize = 8;

uint32_t checksumOf(std::span<const uint8_t> image) {
    constexpr std::array<uint8_t, 4> kEmptyField{};
    const auto rest = image.subspan(kChecksumOffset + kEmptyField.size());
    XXH3_state_t hash;
    XXH3_64bits_reset(&hash);
    XXH3_64bits_update(&hash, image.data(), kChecksumOffset);
    XXH3_64bits_update(&hash, kEmptyField.data(), kEmptyField.size());
    XXH3_64bits_update(&hash, rest.data(), rest.size());
    return static_cast<uint32_t>(XXH3_64bits_digest(&hash));
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

constexpr std::string_view kUsedTwice = "the name is used twice";

/// What is wrong with a register by itself; empty where all is well.
std::string_view findFault(const RegisterInfo& row) {
    if (row.width < 1 || row.width > 64) return "the width is not 1 to 64 bits";
    if (row.direction != kDirectionWrite && row.direction != kDirectionRead) {
        return "the direction is neither write nor read";
    }
    if (maskToWidth(row.initialValue, row.width) != row.initialValue) return "the initial value does not fit the width";
    return {};
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
    std::set<std::string_view> names;
    for (const RegisterInfo& row : design.registers) {
        if (row.name.empty()) return "a register has no name";
        const std::string_view fault = names.insert(row.name).second ? findFault(row) : kUsedTwice;
        if (!fault.empty()) return "register " + row.name + ": " + std::string(fault);
    }
    names.clear();
    for (const UserInfo& row : design.userInfos) {
        if (row.name.empty()) return "a user information has no name";
        if (!names.insert(row.name).second) return "user information " + row.name + ": " + std::string(kUsedTwice);
    }
    return {};
}

}  // namespace simulation
