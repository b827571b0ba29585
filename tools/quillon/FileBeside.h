#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace quillon::tool {

/// A new version of a file, made under a temporary name in the same folder. It takes the file's place when it is
/// complete; until then, and after any failure, the older file stays as it was and nothing else is left behind.
class FileBeside {
public:
    /// Creates the empty temporary file.
    /// \param target file to make or to replace; a symbolic link is followed
    /// \param ending of the temporary name, for those who look at it
    /// \throws ToolError when the folder cannot be written or \p target is something else than a file
    explicit FileBeside(const std::filesystem::path& target, const std::string& ending = ".part");
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    ~FileBeside();

    [[nodiscard]] const std::filesystem::path& temporary() const { return mTemporary; }

    /// Gives the temporary file its own name, and the rights of the file that it replaces.
    /// \throws ToolError when that fails
    void complete();

private:
    std::filesystem::path mTarget;
    std::filesystem::path mTemporary;
    bool mIsComplete = false;
};

/// A FileBeside that the tool writes itself.
class NewFile {
public:
    /// \throws ToolError when it cannot be opened
    explicit NewFile(const std::filesystem::path& path);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    FILE* stream() { return mFile; }

    /// \throws ToolError when not everything could be written
    void complete();

private:
    std::filesystem::path mPath;
    FileBeside mBeside;
    FILE* mFile = nullptr;
};

/// \param error value of errno
/// \throws ToolError that names the file and the reason
[[noreturn]] void refuseFile(const std::filesystem::path& path, int error);

}  // namespace quillon::tool
