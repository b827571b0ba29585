#include "FileBeside.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "ToolError.h"

namespace quillon::tool {

namespace {

namespace fs = std::filesystem;

/// The file behind a symbolic link: a rename would replace the link itself.
fs::path behindLinks(const fs::path& path) {
    std::error_code problem;
    if (!fs::is_symlink(path, problem)) return path;
    const fs::path file = fs::weakly_canonical(path, problem);
    return problem ? path : file;
}

}  // namespace

void refuseFile(const fs::path& path, int error) {
    throw ToolError(kExitEnvironment, fmt::format("cannot write {}: {}", path.string(), std::strerror(error)));
}

FileBeside::FileBeside(const fs::path& target, const std::string& ending)
    : mTarget(behindLinks(target)), mTemporary(mTarget.parent_path() / fmt::format(".quillon-{}{}", getpid(), ending)) {
    std::error_code ignored;
    if (fs::is_directory(mTarget, ignored)) refuseFile(target, EISDIR);
    if (fs::exists(mTarget, ignored) && !fs::is_regular_file(mTarget, ignored)) {
        throw ToolError(kExitEnvironment, fmt::format("cannot write {}: it is no regular file", target.string()));
    }
    const int descriptor = open(mTemporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (descriptor < 0) refuseFile(target, errno);
    close(descriptor);
}

FileBeside::~FileBeside() {
    if (!mIsComplete) unlink(mTemporary.c_str());
}

void FileBeside::complete() {
    std::error_code ignored;
    const fs::file_status former = fs::status(mTarget, ignored);
    if (fs::is_regular_file(former)) fs::permissions(mTemporary, former.permissions(), ignored);
    if (rename(mTemporary.c_str(), mTarget.c_str()) != 0) refuseFile(mTarget, errno);
    mIsComplete = true;
}

NewFile::NewFile(const fs::path& path) : mPath(path), mBeside(path), mFile(fopen(mBeside.temporary().c_str(), "wbe")) {
    if (mFile == nullptr) refuseFile(mPath, errno);
}

NewFile::~NewFile() {
    if (mFile != nullptr) fclose(mFile);
}

void NewFile::complete() {
    // A write that failed before has left its reason in errno.
    const bool isWritten = ferror(mFile) == 0 && fflush(mFile) == 0;
    const int writeError = errno == 0 ? EIO : errno;
    const bool isClosed = fclose(mFile) == 0;
    mFile = nullptr;
    if (!isWritten) refuseFile(mPath, writeError);
    if (!isClosed) refuseFile(mPath, errno);
    mBeside.complete();
}

}  // namespace quillon::tool
