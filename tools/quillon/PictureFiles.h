#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace quillon::tool {

/// A gray picture of 8 bits a pixel, line after line.
struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::span<const std::byte> pixels;  ///< width times height bytes, borrowed
};

/// Writes numbered pictures to files. A file appears under its name when it is complete: it is written under another
/// name in the same folder and then renamed, and a failure leaves nothing behind.
class PictureFiles {
public:
    /// \param pattern path with one place for the picture's number: %d, or %03d for at least three digits; %% is a
    ///        percent sign. The name's ending chooses the format, .png or .pgm.
    /// \throws ToolError when the pattern cannot be used
    explicit PictureFiles(const std::string& pattern);

    /// \return whether each picture gets a name of its own
    [[nodiscard]] bool isNumbered() const { return mIsNumbered; }
    [[nodiscard]] std::filesystem::path path(int number) const;

    /// Creates the folder of the files when there is none.
    /// \throws ToolError when it cannot be created or written
    void prepareFolder() const;

    /// \throws ToolError when the file cannot be written completely
    void write(int number, const Picture& picture) const;

private:
    enum class Format { Png, Pgm };

    void parse(const std::string& pattern);
    [[nodiscard]] std::filesystem::path folder() const;

    Format mFormat = Format::Png;
    bool mIsNumbered = false;
    int mDigits = 0;
    std::string mBefore;
    std::string mAfter;
};

}  // namespace quillon::tool
