#pragma once

#include <array>
#include <atomic>
#include <cstddef>

#include "fabrix/types.h"

class Fg_FabrixBoard;
class Fg_Log;
class RSControl;

/// State of image acquisition per hardware path, and the steps that start and stop it.
///
/// Owned by the master; borrows the board and the control module. The host's calls on one grabber are serialised,
/// except that a blocking wait may run while another thread stops: the flags are atomics. A path that does not
/// exist reads as idle and keeps nothing.
class Fg_ImageControl {
public:
    explicit Fg_ImageControl(Fg_FabrixBoard* board);
    Fg_ImageControl(const Fg_ImageControl&) = delete;
    Fg_ImageControl& operator=(const Fg_ImageControl&) = delete;

    /// \param lRSControl borrowed; must be set before an acquisition stops
    void setRSControl(RSControl* lRSControl);

    /// \name State of a path
    /// Setters with a result return 0, or FG_INVALID_PORT for a path that does not exist.
    /// @{
    int setMemory(int port, dma_mem* mem);
    [[nodiscard]] dma_mem* getMemory(int port) const;
    void setImageAcqStarted(int port, bool value);
    [[nodiscard]] bool getImageAcqStarted(int port) const;
    void setImageDMATransferActive(int port, bool value);
    [[nodiscard]] bool getImageDMATransferActive(int port) const;
    /// The DMA mode is 1 (continuous) or 2 (each buffer handed back), 0 before the first start.
    void setImageDMAMode(int port, int mode);
    [[nodiscard]] int getImageDMAMode(int port) const;
    /// \param value time-out of the DMA in seconds
    int setImageTimeout(int port, int value);
    [[nodiscard]] int getImageTimeout(int port) const;
    /// \param value bytes of a picture
    void setImageSize(const unsigned int port, const size_t value);
    [[nodiscard]] size_t getImageSize(int port) const;
    /// @}

    /// Starts the DMA of a path into \p mem.
    /// \param nFlag 1 or 2; else FG_INVALID_ARGUMENT
    /// \return 0 or more, or the library's code, which leaves the transfer inactive
    int StartAcquire(frameindex_t PicCount, int nFlag, int port, dma_mem* mem);
    /// Stops the DMA of a path, then switches global work off and pulses the reset.
    /// \return 0; FG_NOT_STARTED; or FG_DMA_STOP_FAILED, which leaves the path started so that a stop can be tried
    /// again
    int stopImageAcquire(int port);
    /// \param nParam 100: 1 while the path is not started, else 0; any other is FG_INVALID_ARGUMENT
    int getImageStatus(int port, int nParam, frameindex_t nData, dma_mem* pMem);
    /// \return the number of the last complete picture, or FG_BUFFER_STATUS_FAILED
    frameindex_t getLastPicNumberEx(int port, dma_mem* pMem);
    /// Waits for picture \p Pic_Nr, at most \p Timeout seconds; holds no lock.
    /// \return the last picture number or the library's code
    frameindex_t getLastPicNumberBlockingEx(int port, frameindex_t Pic_Nr, int Timeout, dma_mem* pMem);

    /// \name Facts of a picture (from 1), of the path's remembered memory or of \p pMem
    /// @{
    int getImageTag(int port, frameindex_t pos);
    int getImageTagEx(frameindex_t pos, dma_mem* pMem);
    /// \return bytes transferred
    size_t getImageTransferLength(dma_mem* pMem, frameindex_t picno);
    size_t getImageTransferLength(int port, frameindex_t pictno);
    /// @}

private:
    static constexpr size_t kPaths = 4;
    static constexpr int kDefaultTimeoutS = 20;
    static bool isPath(int port) { return port >= 0 && port < static_cast<int>(kPaths); }
    static size_t at(int port) { return static_cast<size_t>(port); }

    Fg_FabrixBoard* mFabrixBoard;
    RSControl* mRSControl = nullptr;
    Fg_Log* mFg_Log;
    std::array<dma_mem*, kPaths> mMemory{};
    std::array<size_t, kPaths> mImageSize{};
    std::array<std::atomic<bool>, kPaths> mImageAcqStartedPort{};
    std::array<int, kPaths> mImageDMAMode{};
    std::array<std::atomic<bool>, kPaths> mImageDMATransferActive{};
    std::array<int, kPaths> mImageTimeout{};
};
