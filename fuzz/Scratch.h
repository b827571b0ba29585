#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

/// Ends the run with a message: the input is a finding.
inline void expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// A folder of its own, which the process works in and which goes with it; in memory where the machine has such a
/// place, for a file is written anew for each input. Names out of fuzzed data get no slash, so that nothing is written
/// anywhere else.
class Scratch {
public:
    Scratch() {
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = access(memory.c_str(), W_OK | X_OK) == 0;
        std::string pattern =
            ((hasMemory ? memory : std::filesystem::temp_directory_path()) / "quillon-fuzz-XXXXXX").string();
        expect(mkdtemp(pattern.data()) != nullptr && chdir(pattern.c_str()) == 0, "a temporary folder");
        mFolder = pattern;
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { std::filesystem::remove_all(mFolder); }

    /// Writes a file of the folder.
    static void write(const char* name, const uint8_t* data, size_t size) {
        std::FILE* const file = std::fopen(name, "wb");
        expect(file != nullptr, "a scratch file");
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }

private:
    std::filesystem::path mFolder;
};

inline const Scratch kScratch;
