#include "FastDeflate.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <queue>
#include <utility>

namespace quillon::tool {

namespace {

// Symbols of the format: 256 bytes, the end of a block, and the classes of run lengths.
constexpr size_t kEndOfBlock = 256;
constexpr size_t kFirstLength = 257;
constexpr size_t kSymbols = 286;
constexpr unsigned kLongestCode = 15;
/// A run is worth looking at where eight bytes equal their neighbours; the format ends one at 258 bytes.
constexpr size_t kShortestRun = 8;
constexpr size_t kLongestRun = 258;
constexpr size_t kLongestStored = 65535;
/// One set of codes serves so many bytes.
constexpr size_t kBlock = 2 * kLongestStored;
/// Bytes that a block may take beyond its content, and that the whole may.
constexpr size_t kBlockRoom = 24;
constexpr size_t kStreamRoom = 16;
/// Order in which the format lists the code lengths of the lengths 0 to 15, after three that are not used here.
constexpr unsigned kLengthCodes = 19;
constexpr unsigned kUnusedLengthCodes = 3;
/// Every code length takes four bits.
constexpr unsigned kLengthBits = 4;

struct LengthClass {
    uint16_t base;
    uint8_t extraBits;
};
constexpr std::array<LengthClass, kSymbols - kFirstLength> kLengthClasses{
    {{3, 0}, {4, 0}, {5, 0}, {6, 0}, {7, 0}, {8, 0}, {9, 0}, {10, 0}, {11, 1}, {13, 1},
     {15, 1}, {17, 1}, {19, 2}, {23, 2}, {27, 2}, {31, 2}, {35, 3}, {43, 3}, {51, 3}, {59, 3},
     {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}
};

/// Class of every run length.
constexpr auto kClassOf = [] {
    std::array<uint8_t, kLongestRun + 1> classes{};
    size_t row = 0;
    for (size_t length = kLengthClasses.front().base; length <= kLongestRun; ++length) {
        while (row + 1 < kLengthClasses.size() && kLengthClasses[row + 1].base <= length) ++row;
        classes[length] = static_cast<uint8_t>(row);
    }
    return classes;
}();

using Counts = std::array<uint32_t, kSymbols>;
using Lengths = std::array<uint8_t, kSymbols>;
/// A byte, or kEndOfBlock and a run's length together.
using Token = uint16_t;

/// Writes bits, the lowest first, as the format wants them. The memory is borrowed and large enough.
class BitWriter {
public:
    explicit BitWriter(std::byte* to) : mTo(to) {}

    /// \param count at most 32
    void put(uint64_t bits, unsigned count) {
        mBits |= bits << mCount;
        mCount += count;
        if (mCount >= 32) drop(4);
    }
    void fillByte() { drop((mCount + 7) / 8); }
    /// At the beginning of a byte only.
    void put(std::span<const uint8_t> bytes) {
        std::memcpy(mTo, bytes.data(), bytes.size());
        mTo += bytes.size();
    }

    [[nodiscard]] std::byte* end() const { return mTo; }

private:
    /// Writes four bytes, of which the next ones replace those that do not count yet.
    void drop(unsigned bytes) {
        for (unsigned i = 0; i < 4; ++i) mTo[i] = static_cast<std::byte>(mBits >> (8 * i));
        mTo += bytes;
        mBits >>= 8 * bytes;
        mCount -= std::min(mCount, 8 * bytes);
    }

    std::byte* mTo;
    uint64_t mBits = 0;
    unsigned mCount = 0;
};

uint64_t eightBytes(const uint8_t* from) {
    uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof(bytes));
    return bytes;
}

/// Takes a block apart into bytes and runs.
/// \param room at least as long as the block
/// \return the part of it that was used
std::span<const Token> findRuns(std::span<const uint8_t> block, std::span<Token> room) {
    const size_t size = block.size();
    size_t count = 0;
    for (size_t i = 0; i < size;) {
        const bool isRun = i > 0 && i + kShortestRun <= size && eightBytes(&block[i]) == eightBytes(&block[i - 1]);
        if (!isRun) {
            room[count++] = block[i++];
            continue;
        }
        const size_t most = std::min(size - i, kLongestRun);
        size_t length = kShortestRun;
        while (length < most && block[i + length] == block[i - 1]) ++length;
        room[count++] = static_cast<Token>(kEndOfBlock + length);
        i += length;
    }
    return room.first(count);
}

size_t symbolOf(Token token) { return token < kEndOfBlock ? token : kFirstLength + kClassOf[token - kEndOfBlock]; }

/// Depths of a tree of codes over the symbols that occur, at least two.
Lengths codeDepths(const Counts& counts) {
    using Entry = std::pair<uint64_t, size_t>;
    std::array<size_t, 2 * kSymbols> parents{};
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
    for (size_t i = 0; i < kSymbols; ++i) {
        if (counts[i] != 0) open.emplace(counts[i], i);
    }
    size_t next = kSymbols;
    while (open.size() > 1) {
        const Entry first = open.top();
        open.pop();
        const Entry second = open.top();
        open.pop();
        parents[first.second] = parents[second.second] = next;
        open.emplace(first.first + second.first, next++);
    }
    // A parent stands behind its children, so one way back gives every depth.
    std::array<uint8_t, 2 * kSymbols> depths{};
    for (size_t i = next - 1; i-- > 0;) {
        if (parents[i] != 0) depths[i] = static_cast<uint8_t>(depths[parents[i]] + 1);
    }
    Lengths lengths{};
    std::copy_n(depths.begin(), kSymbols, lengths.begin());
    return lengths;
}

/// Lengths of the codes; where one would be too long for the format, the counts come nearer to each other.
Lengths codeLengths(Counts counts) {
    Lengths lengths = codeDepths(counts);
    while (*std::max_element(lengths.begin(), lengths.end()) > kLongestCode) {
        for (uint32_t& count : counts) count = count == 0 ? 0 : count / 2 + 1;
        lengths = codeDepths(counts);
    }
    return lengths;
}

unsigned reversed(unsigned code, unsigned bits) {
    unsigned result = 0;
    for (unsigned i = 0; i < bits; ++i) result |= ((code >> i) & 1U) << (bits - 1 - i);
    return result;
}

/// The codes that follow from their lengths.
std::array<uint16_t, kSymbols> codesOf(const Lengths& lengths) {
    std::array<uint16_t, kSymbols> codes{};
    unsigned next = 0;
    for (unsigned bits = 1; bits <= kLongestCode; ++bits, next <<= 1U) {
        for (size_t i = 0; i < kSymbols; ++i) {
            if (lengths[i] == bits) codes[i] = static_cast<uint16_t>(reversed(next++, bits));
        }
    }
    return codes;
}

void putHeader(BitWriter& out, const Lengths& lengths, bool isLast) {
    out.put(isLast ? 1 : 0, 1);
    out.put(2, 2);  // codes of its own
    out.put(kSymbols - kFirstLength, 5);
    out.put(0, 5);  // one distance
    out.put(kLengthCodes - 4, 4);
    for (unsigned i = 0; i < kLengthCodes; ++i) out.put(i < kUnusedLengthCodes ? 0 : kLengthBits, 3);
    for (const uint8_t length : lengths) out.put(reversed(length, kLengthBits), kLengthBits);
    out.put(reversed(1, kLengthBits), kLengthBits);  // the distance 1 has a code of one bit, a zero
}

void putCoded(BitWriter& out, std::span<const Token> tokens, const Lengths& lengths, bool isLast) {
    putHeader(out, lengths, isLast);
    const auto codes = codesOf(lengths);
    for (const Token token : tokens) {
        const size_t symbol = symbolOf(token);
        out.put(codes[symbol], lengths[symbol]);
        if (token < kEndOfBlock) continue;
        const LengthClass& row = kLengthClasses[symbol - kFirstLength];
        out.put(token - kEndOfBlock - row.base, row.extraBits + 1U);  // and the distance
    }
    out.put(codes[kEndOfBlock], lengths[kEndOfBlock]);
}

void putStored(BitWriter& out, std::span<const uint8_t> block, bool isLast) {
    do {
        const auto part = block.first(std::min(block.size(), kLongestStored));
        block = block.subspan(part.size());
        out.put(isLast && block.empty() ? 1 : 0, 3);
        out.fillByte();
        out.put(part.size(), 16);
        out.put(part.size() ^ kLongestStored, 16);
        out.fillByte();
        out.put(part);
    } while (!block.empty());
}

}  // namespace

void deflateFast(std::span<const uint8_t> bytes, std::vector<std::byte>& stream) {
    const size_t start = stream.size();
    stream.resize(start + bytes.size() + (bytes.size() / kBlock + 1) * kBlockRoom + kStreamRoom);
    BitWriter out(&stream[start]);
    out.put(0x0178, 16);
    std::vector<Token> room(std::min(bytes.size(), kBlock));
    auto rest = bytes;
    do {
        const auto block = rest.first(std::min(rest.size(), kBlock));
        rest = rest.subspan(block.size());
        const std::span<const Token> tokens = findRuns(block, room);
        Counts counts{};
        for (const Token token : tokens) ++counts[symbolOf(token)];
        ++counts[kEndOfBlock];
        // A tree takes two symbols.
        if (tokens.empty()) ++counts[0];
        const Lengths lengths = codeLengths(counts);
        uint64_t bits = (kSymbols + 1) * kLengthBits;
        for (size_t i = 0; i < kSymbols; ++i) bits += uint64_t{counts[i]} * lengths[i];
        if (bits > block.size() * 7) {
            putStored(out, block, rest.empty());
        } else {
            putCoded(out, tokens, lengths, rest.empty());
        }
    } while (!rest.empty());
    out.fillByte();
    const auto sum = static_cast<uint32_t>(adler32_z(1, bytes.data(), bytes.size()));
    stream.resize(static_cast<size_t>(out.end() - stream.data()));
    for (int shift = 24; shift >= 0; shift -= 8) stream.push_back(static_cast<std::byte>(sum >> shift));
}

}  // namespace quillon::tool
