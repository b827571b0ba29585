/// \file
/// Line-oriented text files, as configuration and LUT files have in common.
#pragma once

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

/// Characters that are read of a line at once, with a terminator; the rest of a longer line reads as further lines.
constexpr size_t kLineCapacity = 256;
using Line = std::array<char, kLineCapacity>;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
/// A stream that is flushed and closed with its owner.
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

/// \return whether the file can be opened for reading
[[nodiscard]] inline bool canBeRead(const char* path) {
    return path != nullptr && UniqueFile(std::fopen(path, "r")) != nullptr;
}

/// Writes a text and flushes, so that the file is complete at any time. A failure stays in the stream's error mark.
inline void writeFlushed(std::FILE* file, const std::string& text) {
    if (file == nullptr) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fflush(file);
}

/// Reads the next line with its line feed, or the next part of a long one.
/// \return false at the end of the file
template <size_t N>
[[nodiscard]] bool readLine(std::FILE* file, std::array<char, N>& line) {
    return std::fgets(line.data(), static_cast<int>(N), file) != nullptr;
}

[[nodiscard]] inline bool contains(const char* line, const char* text) { return std::strstr(line, text) != nullptr; }

/// Splits a text in place. Separators in a row count as one, and none stands before the first or after the last piece.
class Pieces {
public:
    Pieces(char* text, const char* separators) : mRest(text), mSeparators(separators) {}

    /// \return the next piece, or null
    [[nodiscard]] char* next() {
        char* const text = mIsFirst ? mRest : nullptr;
        mIsFirst = false;
        return strtok_r(text, mSeparators, &mRest);
    }

    /// \return the second piece of a text, or null
    [[nodiscard]] static char* second(char* text, const char* separators) {
        Pieces pieces(text, separators);
        return pieces.next() == nullptr ? nullptr : pieces.next();
    }

private:
    char* mRest;
    const char* mSeparators;
    bool mIsFirst = true;
};
