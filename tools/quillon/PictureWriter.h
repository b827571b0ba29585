#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "PictureFiles.h"
#include "fabrix/types.h"

namespace quillon::tool {

/// Writes pictures in a thread of its own, so that a slow disk does not keep the caller from looking after the board.
/// The files are borrowed and used by that thread alone until finish() has returned. One thread hands over.
class PictureWriter {
public:
    using Pixels = std::vector<std::byte>;

    /// Every picture is \p width x \p height pixels.
    /// \param places pictures that may wait, the one that is being written included; at least 1
    PictureWriter(PictureFiles& files, uint32_t width, uint32_t height, size_t places);
    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;
    /// Writes no picture that still waits.
    ~PictureWriter();

    /// Waits for a free place. \return the room for a picture, to be handed over or given back; nothing when \p stop
    /// is requested or a file could not be written
    std::optional<Pixels> takePlace(const std::stop_token& stop);
    /// \return whether the last takePlace() had to wait for the disk
    [[nodiscard]] bool hasWaited() const { return mHasWaited; }
    void giveBack(Pixels place);
    void write(frameindex_t number, Pixels pixels);

    /// Waits until all is written and completes the files. Pictures that still wait are given up when \p giveUp is
    /// requested.
    void finish(const std::stop_token& giveUp);

    [[nodiscard]] uint64_t written() const;
    /// \return pictures that were handed over and given up
    [[nodiscard]] uint64_t givenUp() const;
    /// \return why a file could not be written; empty while all is well
    [[nodiscard]] std::string problem() const;

private:
    struct Job {
        frameindex_t number;
        Pixels pixels;
    };

    void run();
    void runGuarded(const Job& job);
    void end();
    void note(const std::string& problem);

    PictureFiles& mFiles;
    const uint32_t mWidth;
    const uint32_t mHeight;
    bool mHasWaited = false;

    mutable std::mutex mLock;
    std::condition_variable_any mChanged;
    // Guarded by mLock:
    std::vector<Pixels> mPlaces;
    std::deque<Job> mJobs;
    uint64_t mWritten = 0;
    uint64_t mGivenUp = 0;
    std::string mProblem;
    bool mIsWriting = false;
    bool mIsEnding = false;

    std::thread mThread;
};

}  // namespace quillon::tool
