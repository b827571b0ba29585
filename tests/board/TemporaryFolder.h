#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

/// A folder that lasts as long as the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "quillon_XXXXXX").string();
        mPath = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(mPath); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return mPath; }

    void write(const std::string& name, const std::string& content) const {
        std::ofstream(mPath / name, std::ios::binary) << content;
    }

private:
    std::filesystem::path mPath;
};
