#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A folder of its own for one test, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quillon-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        mPath = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return mPath; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return mPath / name; }
    /// \return the path of a file, which need not exist, as a text
    [[nodiscard]] std::string file(const std::string& name) const { return mPath / name; }
    /// Writes a file anew. \return its path
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(mPath / name, std::ios::binary) << content;
        return file(name);
    }
    /// Makes a file on a device without space. \return its path
    [[nodiscard]] std::string makeFull(const std::string& name) const {
        std::filesystem::create_symlink("/dev/full", mPath / name);
        return file(name);
    }
    /// \return the bytes of a file; none when there is no such file
    [[nodiscard]] std::string content(const std::string& name) const {
        std::ifstream stream(mPath / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    std::filesystem::path mPath;
};
