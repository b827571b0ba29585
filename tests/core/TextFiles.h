#pragma once

#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// A folder of its own for the files of one test, gone with it.
class TextFiles {
public:
    TextFiles() {
        std::string pattern = testing::TempDir() + "quillon-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        mFolder = pattern;
    }
    TextFiles(const TextFiles&) = delete;
    TextFiles& operator=(const TextFiles&) = delete;
    ~TextFiles() { std::filesystem::remove_all(mFolder); }

    [[nodiscard]] std::string path(const std::string& name) const { return mFolder / name; }
    /// \return the path of a new file
    [[nodiscard]] std::string make(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    [[nodiscard]] std::string content(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    /// Makes \p name a file on a device without space.
    [[nodiscard]] std::string makeFull(const std::string& name) const {
        std::filesystem::create_symlink("/dev/full", path(name));
        return path(name);
    }

private:
    std::filesystem::path mFolder;
};

/// Puts the process into a locale whose decimal separator is a comma, which need not be installed: the C library's
/// compiled form of its numbers category is written here.
class DecimalCommaLocale {
public:
    DecimalCommaLocale() {
        std::filesystem::create_directory(mFiles.path("comma"));
        std::ofstream file(mFiles.path("comma/LC_NUMERIC"), std::ios::binary);
        // Magic number and category, then six values: decimal point, thousands separator, grouping, the first two as
        // wide characters, code set.
        constexpr uint32_t kValues = 36;  // where the values begin: eight words and their padding
        const std::array<uint32_t, 9> head{
            0x20031115u ^ LC_NUMERIC, 6, kValues, kValues + 2, kValues + 3, kValues + 4, kValues + 8, kValues + 12, 0};
        file.write(reinterpret_cast<const char*>(head.data()), sizeof head);
        const std::string values(",\0\0\0,\0\0\0\0\0\0\0UTF-8\0", 18);
        file.write(values.data(), static_cast<std::streamsize>(values.size()));
        file.close();
        setenv("LOCPATH", mFiles.path("").c_str(), 1);
        mIsActive = setlocale(LC_NUMERIC, "comma") != nullptr;
    }
    DecimalCommaLocale(const DecimalCommaLocale&) = delete;
    DecimalCommaLocale& operator=(const DecimalCommaLocale&) = delete;
    ~DecimalCommaLocale() {
        setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

    /// \return whether the C library writes a comma now
    [[nodiscard]] bool isActive() const {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "%.1f", 1.5);
        return mIsActive && std::string(text.data()) == "1,5";
    }

private:
    TextFiles mFiles;
    bool mIsActive = false;
};
