#include "StandardApplets/grabber_basis/Fg_ImageControl.h"

#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"
#include "fabrix/result_codes.h"

namespace {

constexpr int kStatusNotStarted = 100;
constexpr int kDmaModeContinuous = 16;
constexpr int kDmaModeHandShake = 32;

}  // namespace

Fg_ImageControl::Fg_ImageControl(Fg_FabrixBoard* board) : mFabrixBoard(board), mFg_Log(board->getLog()) {
    mFg_Log->Func("Fg_ImageControl::Fg_ImageControl");
    mImageTimeout.fill(kDefaultTimeoutS);
}

void Fg_ImageControl::setRSControl(RSControl* lRSControl) { mRSControl = lRSControl; }

int Fg_ImageControl::setMemory(int port, dma_mem* mem) {
    mFg_Log->Func("Fg_ImageControl::setMemory");
    if (!isPath(port)) return FG_INVALID_PORT;
    mMemory[at(port)] = mem;
    return FG_OK;
}

dma_mem* Fg_ImageControl::getMemory(int port) const {
    mFg_Log->Func("Fg_ImageControl::getMemory");
    return isPath(port) ? mMemory[at(port)] : nullptr;
}

void Fg_ImageControl::setImageAcqStarted(int port, bool value) {
    mFg_Log->Func("Fg_ImageControl::setImageAcqStarted");
    if (isPath(port)) mImageAcqStartedPort[at(port)] = value;
}

bool Fg_ImageControl::getImageAcqStarted(int port) const {
    mFg_Log->Func("Fg_ImageControl::getImageAcqStarted");
    return isPath(port) && mImageAcqStartedPort[at(port)];
}

void Fg_ImageControl::setImageDMATransferActive(int port, bool value) {
    mFg_Log->Func("Fg_ImageControl::setImageDMATransferActive");
    if (isPath(port)) mImageDMATransferActive[at(port)] = value;
}

bool Fg_ImageControl::getImageDMATransferActive(int port) const {
    mFg_Log->Func("Fg_ImageControl::getImageDMATransferActive");
    return isPath(port) && mImageDMATransferActive[at(port)];
}

void Fg_ImageControl::setImageDMAMode(int port, int mode) {
    mFg_Log->Func("Fg_ImageControl::setImageDMAMode");
    if (isPath(port)) mImageDMAMode[at(port)] = mode;
}

int Fg_ImageControl::getImageDMAMode(int port) const {
    mFg_Log->Func("Fg_ImageControl::getImageDMAMode");
    return isPath(port) ? mImageDMAMode[at(port)] : 0;
}

int Fg_ImageControl::setImageTimeout(int port, int value) {
    mFg_Log->Func("Fg_ImageControl::setImageTimeout");
    if (!isPath(port)) return FG_INVALID_PORT;
    mImageTimeout[at(port)] = value;
    return FG_OK;
}

int Fg_ImageControl::getImageTimeout(int port) const {
    mFg_Log->Func("Fg_ImageControl::getImageTimeout");
    return isPath(port) ? mImageTimeout[at(port)] : 0;
}

void Fg_ImageControl::setImageSize(const unsigned int port, const size_t value) {
    mFg_Log->Func("Fg_ImageControl::setImageSize");
    if (port < kPaths) mImageSize[port] = value;
}

size_t Fg_ImageControl::getImageSize(int port) const { return isPath(port) ? mImageSize[at(port)] : 0; }

int Fg_ImageControl::StartAcquire(frameindex_t PicCount, int nFlag, int port, dma_mem* mem) {
    mFg_Log->Func("Fg_ImageControl::StartAcquire");
    const int remembered = setMemory(port, mem);
    if (remembered != FG_OK) return remembered;
    if (nFlag != 1 && nFlag != 2) return FG_INVALID_ARGUMENT;
    setImageDMAMode(port, nFlag);
    const int mode = nFlag == 1 ? kDmaModeContinuous : kDmaModeHandShake;
    const int result = mFabrixBoard->dmaVirtualReadExtAsync(port, 0, mem, mode, PicCount, getImageTimeout(port));
    if (result < 0) setImageDMATransferActive(port, false);
    return result;
}

int Fg_ImageControl::stopImageAcquire(int port) {
    mFg_Log->Func("Fg_ImageControl::stopImageAcquire");
    if (!getImageAcqStarted(port)) return FG_NOT_STARTED;
    const auto path = static_cast<unsigned>(port);
    // Failed register writes do not fail a stop: the DMA alone decides.
    if (mFabrixBoard->dmaVirtualStopTransferExt(port) < 0) {
        std::ignore = mRSControl->writeReset(path);
        std::ignore = mRSControl->writeEnableDisableGlobalwork(path, false);
        return FG_DMA_STOP_FAILED;
    }
    std::ignore = mRSControl->writeEnableDisableGlobalwork(path, false);
    std::ignore = mRSControl->writeReset(path);
    setImageAcqStarted(port, false);
    setImageDMATransferActive(port, false);
    return FG_OK;
}

int Fg_ImageControl::getImageStatus(int port, int nParam, frameindex_t /*nData*/, dma_mem* /*pMem*/) {
    mFg_Log->Func("Fg_ImageControl::getImageStatus");
    if (nParam != kStatusNotStarted) return FG_INVALID_ARGUMENT;
    return getImageAcqStarted(port) ? 0 : 1;
}

frameindex_t Fg_ImageControl::getLastPicNumberEx(int port, dma_mem* pMem) {
    mFg_Log->Func("Fg_ImageControl::getLastPicNumberEx");
    const frameindex_t number = mFabrixBoard->dmaTestVirtualBufferStatus(port, pMem);
    return number < 0 ? FG_BUFFER_STATUS_FAILED : number;
}

frameindex_t Fg_ImageControl::getLastPicNumberBlockingEx(int port, frameindex_t Pic_Nr, int Timeout, dma_mem* pMem) {
    mFg_Log->Func("Fg_ImageControl::getLastPicNumberBlockingEx");
    const int path = mFabrixBoard->getIsDualDesign() ? port : 0;
    return mFabrixBoard->dmaVirtualWaitForBuffer(path, Pic_Nr, pMem, Timeout);
}

int Fg_ImageControl::getImageTag(int port, frameindex_t pos) {
    mFg_Log->Func("Fg_ImageControl::getImageTag");
    return mFabrixBoard->getDMATag(getMemory(port), pos - 1);
}

int Fg_ImageControl::getImageTagEx(frameindex_t pos, dma_mem* pMem) {
    mFg_Log->Func("Fg_ImageControl::getImageTagEx");
    return mFabrixBoard->getDMATag(pMem, pos - 1);
}

size_t Fg_ImageControl::getImageTransferLength(dma_mem* pMem, frameindex_t picno) {
    mFg_Log->Func("Fg_ImageControl::getImageTransferLength");
    return mFabrixBoard->getDMALength(pMem, picno);
}

size_t Fg_ImageControl::getImageTransferLength(int port, frameindex_t pictno) {
    mFg_Log->Func("Fg_ImageControl::getImageTransferLength");
    return mFabrixBoard->getDMALength(getMemory(port), pictno);
}
