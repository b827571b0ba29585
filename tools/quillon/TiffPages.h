#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "Picture.h"

namespace quillon::tool {

/// Writes the pages of a TIFF file, uncompressed. A page is linked to the one before it when all of it has been
/// written, so that a file of which a later page fails still holds the earlier ones.
class TiffPages {
public:
    /// \param file at its begin, open for writing; borrowed
    /// \param isBig BigTIFF, which may grow beyond 4 GB
    TiffPages(FILE* file, bool isBig) : mFile(file), mIsBig(isBig) {}

    /// \return whether the page is complete; the reason of a failure is in errno
    bool append(const Picture& picture);

private:
    [[nodiscard]] std::string header() const;
    /// The directory of a page whose pixels stand at \p pixelsAt.
    [[nodiscard]] std::string directory(const Picture& picture, uint64_t pixelsAt) const;
    [[nodiscard]] size_t offsetBytes() const { return mIsBig ? 8 : 4; }
    bool write(uint64_t at, const void* bytes, size_t size);

    FILE* mFile;
    bool mIsBig;
    uint64_t mEnd = 0;   ///< where the next page begins; 0 before the first
    uint64_t mLink = 0;  ///< where the place of the next page's directory is to be noted
};

}  // namespace quillon::tool
