#pragma once

#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace simulation {

/// What a host did with the board, one line an event, in memory and in a file. Any thread may call it.
class Trace {
public:
    /// Lines kept in memory; what comes later is dropped there, not in the file.
    static constexpr size_t kMostLines = 1'000'000;

    /// Starts or ends keeping lines in memory; starting forgets the lines of before.
    void keep(bool on);

    /// Also writes to \p path, which is emptied first; `-` is standard error, an empty text ends the file.
    /// \return false where the file cannot be written; the trace then goes on as before.
    [[nodiscard]] bool writeTo(const std::string& path);

    [[nodiscard]] bool isOn() const { return mIsOn; }

    void add(const std::string& line);

    [[nodiscard]] std::vector<std::string> lines() const;

private:
    struct CloseFile {
        void operator()(std::FILE* file) const {
            if (file != stderr) std::fclose(file);
        }
    };

    std::atomic<bool> mIsOn{false};
    mutable std::mutex mMutex;
    bool mKeeps = false;                          // guarded by mMutex
    std::vector<std::string> mLines;              // guarded by mMutex
    std::unique_ptr<std::FILE, CloseFile> mFile;  // guarded by mMutex
};

}  // namespace simulation
