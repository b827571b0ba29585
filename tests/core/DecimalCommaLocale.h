#pragma once

#include <locale.h>
#include <stdlib.h>

#include <array>
#include <cstdint>
#include <string>

#include "tests/TemporaryFolder.h"

/// Puts the process into a locale whose decimal separator is a comma, which need not be installed: the C library's
/// compiled form of its numbers category is written here.
class DecimalCommaLocale {
public:
    DecimalCommaLocale() {
        std::filesystem::create_directory(mFiles / "comma");
        std::ofstream file(mFiles / "comma/LC_NUMERIC", std::ios::binary);
        // Magic number and category, then six values: decimal point, thousands separator, grouping, the first two as
        // wide characters, code set.
        constexpr uint32_t kValues = 36;  // where the values begin: eight words and their padding
        const std::array<uint32_t, 9> head{
            0x20031115u ^ LC_NUMERIC, 6, kValues, kValues + 2, kValues + 3, kValues + 4, kValues + 8, kValues + 12, 0};
        file.write(reinterpret_cast<const char*>(head.data()), sizeof head);
        const std::string values(",\0\0\0,\0\0\0\0\0\0\0UTF-8\0", 18);
        file.write(values.data(), static_cast<std::streamsize>(values.size()));
        file.close();
        setenv("LOCPATH", mFiles.path().c_str(), 1);
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
    TemporaryFolder mFiles;
    bool mIsActive = false;
};
