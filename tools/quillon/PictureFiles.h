#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "FileBeside.h"
#include "Picture.h"
#include "PngFile.h"
#include "TiffPages.h"

namespace quillon::tool {

enum class PictureFormat { Png, Pgm, Tiff, Raw };

/// Writes pictures to numbered files, or to one file that holds all of them. A file appears under its name when it
/// is complete: it is written under another name in the same folder and then renamed, and a failure leaves no half
/// picture behind.
class PictureFiles {
public:
    /// \param pattern path with a place for the picture's number: %d, or %03d for at least three digits; %% is a
    ///        percent sign. The name's ending chooses the format: .png, .pgm, .tif, .tiff or .raw. Without a place for
    ///        the number, TIFF files get a page for each picture, and raw files hold one after another.
    /// \throws ToolError when the pattern cannot be used
    explicit PictureFiles(const std::string& pattern, PngEffort effort = PngEffort::Fast);

    /// \return whether more than one picture can be written
    [[nodiscard]] bool takesMany() const { return mIsNumbered || isOneFileForAll(); }
    [[nodiscard]] std::filesystem::path path(int number) const;

    /// Creates the folder of the files when there is none.
    /// \throws ToolError when it cannot be created or written
    void prepareFolder() const;

    /// \param mayGrowBeyond4GB of one TIFF file for all
    void setLargeFile(bool mayGrowBeyond4GB) { mIsLarge = mayGrowBeyond4GB; }

    /// \throws ToolError when the picture cannot be written completely
    void write(int number, const Picture& picture);

    /// Gives one file for all its name, with the pictures that were written completely. Nothing appears without any.
    /// \throws ToolError when that fails
    void complete();

private:
    /// One file for all pictures.
    struct Stack {
        explicit Stack(const std::filesystem::path& path, bool isLarge);

        NewFile file;
        TiffPages pages;
        off_t end = 0;  ///< of what has been written completely
    };

    void parse(const std::string& pattern);
    [[nodiscard]] std::filesystem::path folder() const;
    [[nodiscard]] bool isOneFileForAll() const {
        return !mIsNumbered && (mFormat == PictureFormat::Tiff || mFormat == PictureFormat::Raw);
    }
    bool encode(FILE* file, const Picture& picture) const;
    void append(const Picture& picture);

    PictureFormat mFormat = PictureFormat::Png;
    PngEffort mEffort;
    bool mIsNumbered = false;
    bool mIsLarge = false;
    int mDigits = 0;
    std::string mBefore;
    std::string mAfter;
    std::optional<Stack> mStack;
};

}  // namespace quillon::tool
