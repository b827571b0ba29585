#pragma once

#include <memory>

#include "StandardApplets/grabber_basis/Fg_Log.h"
#include "fabrix/haprt.h"
#include "fabrix/result_codes.h"
#include "fabrix/tavo_hw.h"

/// Unloads a design that is no longer needed.
struct DesignUnloader {
    void operator()(fpga_design* design) const { HapUnloadHapFile(design); }
};
using UniqueDesign = std::unique_ptr<fpga_design, DesignUnloader>;

/// The applet's only path to the hardware: binds the board device handle and the loaded design, and forwards each
/// operation to one operation of the hardware-access or the applet runtime library.
///
/// Owned by the master. Owns the design, which it unloads, and the log; borrows the device. Takes no lock: a
/// blocking dmaVirtualWaitForBuffer may run while another thread stops the transfer. Codes of the two libraries
/// pass through unchanged unless an operation says otherwise. Register handles are those of the applet runtime
/// library, 0 meaning that the design has no such register; register values are 64 bits wide.
class Fg_FabrixBoard {
public:
    /// \param design taken over; may be null
    /// \param hwhandle borrowed for the life of the board
    /// \param logfile handed to the log
    Fg_FabrixBoard(fpga_design* design, FgDevice* hwhandle, const char* logfile);
    Fg_FabrixBoard(const Fg_FabrixBoard&) = delete;
    Fg_FabrixBoard& operator=(const Fg_FabrixBoard&) = delete;
    ~Fg_FabrixBoard();

    /// \name Configuration
    /// A negative code leaves isBoardConfigured() as it was; success makes it true and gives 0.
    /// @{
    int configureFPGA();
    int configureSlave();
    int configureBoard(bool isSlave);
    [[nodiscard]] bool isBoardConfigured();
    /// @}

    /// \name Registers
    /// @{
    int writeRegister(int hreg, const uint64_t value);
    /// \return the value; all 64 bits set when the library refuses the read
    uint64_t readRegister(int hreg);
    /// \param err becomes FG_REGISTER_NOT_FOUND when the design has no such register; else left alone; may be null
    /// \return the handle, or 0
    int getHapRegisterByName(const char* name, int* err);
    /// \return the width of register \p nr in bits; \p err is not used, here and below
    int getRegisterBitRange(int nr, int* err);
    /// \return the name of register \p nr, owned by the applet runtime library
    const char* getRegisterName(int nr, int* err);
    /// \return 1 when register \p nr may be written
    int getRegisterDirection(int nr, int* err);
    int getNrOfRegister(int* err);
    /// \return 0 for \p nr of 0 or less, else \p nr + 1
    int getRegisterByNumber(int nr, int* err);
    /// \return the design's name, owned by the applet runtime library
    [[nodiscard]] const char* getDesignName() const;
    /// @}

    /// \name Buffers and DMA
    /// Buffers are counted from 0, pictures from 1; sizes are bytes, time-outs seconds.
    /// @{
    dma_mem* fbSetVirtualUserBuffer(const size_t size, const frameindex_t noOfBuffer, int* err);
    int fbFreeVirtualUserBuffer(dma_mem* mem);
    int fbAddVirtualUserBuffer(dma_mem* mem, void* buffer, size_t size, frameindex_t bufferIndex);
    int fbDeleteVirtualUserBuffer(dma_mem* memHandle, frameindex_t bufferIndex);
    frameindex_t fbGetNrOfSubBuffer(dma_mem* mem);
    size_t fbGetBufferSize(dma_mem* mem);
    int dmaVirtualReadExtAsync(int nPort, frameindex_t nStartSubbuf, dma_mem* pMem, int nMode,
                               frameindex_t nNrOfTransfer, int nTimeout);
    int dmaVirtualWriteExtAsync(int nPort, frameindex_t nStartSubbuf, size_t nDmaLength, dma_mem* pMem, int nMode,
                                frameindex_t nNrOfTransfer, int nTimeout);
    /// \return FG_DMA_STOP_FAILED for any negative code of the library, else 0
    int dmaVirtualStopTransferExt(int port);
    /// \return the number of the last complete picture, or a negative code
    frameindex_t dmaTestVirtualBufferStatus(int port, dma_mem* mem);
    /// Blocks until picture \p picNo has arrived, the transfer is stopped or \p timeout has passed.
    frameindex_t dmaVirtualWaitForBuffer(int port, frameindex_t picNo, dma_mem* mem, int timeout);
    int getDMATag(dma_mem* mem, frameindex_t bufferNo);
    int getDMATimeStamp(dma_mem* mem, frameindex_t bufferNo);
    uint64_t getDMATimeStampLong(dma_mem* mem, frameindex_t bufferNo);
    /// \return bytes transferred for picture \p picrNo
    size_t getDMALength(dma_mem* mem, frameindex_t picrNo);
    /// Reads four words of data queue 0 into \p stat.
    int userInterruptReadBuffer(uint32_t* stat, int* err, int timeout);
    int userInterruptReadBufferClear(int* err);
    /// @}

    /// \name Clocks, status and identity
    /// @{
    /// \return clock of the design's logic in MHz
    double getFPGAClk();
    /// \return PCI Express clock in MHz, that is ticks per microsecond
    double getPlxClk();
    /// \return status bits of a Camera Link connector as the library reports them
    int getCameraStatusExtended(unsigned int port);
    void setAppletID(int id);
    [[nodiscard]] int getAppletID();
    [[nodiscard]] bool checkAppletID(int id);
    void setAppletVersion(const unsigned int& appletVer);
    [[nodiscard]] unsigned int getAppletVersion();
    void setAppletRevision(const unsigned int& appletRev);
    [[nodiscard]] unsigned int getAppletRevision();
    /// A dual design has two independent acquisition paths.
    void setIsDualDesign(bool value);
    [[nodiscard]] bool getIsDualDesign();
    /// \return the design, which stays the board's; may be null
    [[nodiscard]] fpga_design* getDesign() const;
    [[nodiscard]] Fg_Log* getLog() const;
    /// @}

private:
    int configured(int result);

    bool mFPGAIsConfigured = false;
    FgDevice* mPtrToBoard;
    UniqueDesign mPtrToDesign;
    [[maybe_unused]] double mFPGAClk = 0.0;  ///< reserved; the clock is a constant
    int mAppletID = -1;
    unsigned int mAppletVersion = ~0u;
    unsigned int mAppletRevision = ~0u;
    bool mIsTwoCamModel = false;
    std::unique_ptr<Fg_Log> mFg_Log;
};
