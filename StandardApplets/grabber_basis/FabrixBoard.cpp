#include "StandardApplets/grabber_basis/FabrixBoard.h"

namespace {

constexpr double kFpgaClkMHz = 250.0;
constexpr double kPlxClkMHz = 62.5;
constexpr int kInterruptQueue = 0;
constexpr int kInterruptWords = 4;

}  // namespace

// The design is taken over last, so that a constructor that throws leaves it with the caller.
Fg_FabrixBoard::Fg_FabrixBoard(fpga_design* design, FgDevice* hwhandle, const char* logfile)
    : mPtrToBoard(hwhandle), mFg_Log(std::make_unique<Fg_Log>(logfile)) {
    mPtrToDesign.reset(design);
    mFg_Log->Func("Fg_FabrixBoard::Fg_FabrixBoard()");
}

Fg_FabrixBoard::~Fg_FabrixBoard() {
    mPtrToDesign.reset();
    mFg_Log->Func("Fg_FabrixBoard::~Fg_FabrixBoard()");
}

int Fg_FabrixBoard::configured(int result) {
    if (result < 0) return result;
    mFPGAIsConfigured = true;
    return FG_OK;
}

int Fg_FabrixBoard::configureFPGA() {
    mFg_Log->Func("Fg_FabrixBoard::configureFPGA");
    return configured(TavoConfigureFpga(mPtrToBoard, mPtrToDesign.get()));
}

int Fg_FabrixBoard::configureSlave() {
    mFg_Log->Func("Fg_FabrixBoard::configureSlave");
    return configured(TavoConfigureSlave(mPtrToBoard, mPtrToDesign.get()));
}

int Fg_FabrixBoard::configureBoard(bool isSlave) {
    mFg_Log->Func("Fg_FabrixBoard::configureBoard");
    return isSlave ? configureSlave() : configureFPGA();
}

bool Fg_FabrixBoard::isBoardConfigured() {
    mFg_Log->Func("Fg_FabrixBoard::isBoardConfigured");
    return mFPGAIsConfigured;
}

int Fg_FabrixBoard::writeRegister(int hreg, const uint64_t value) {
    return TavoRegisterWrite(mPtrToBoard, hreg, value);
}

uint64_t Fg_FabrixBoard::readRegister(int hreg) {
    uint64_t value = 0;
    return TavoRegisterRead(mPtrToBoard, hreg, &value) < 0 ? ~uint64_t{0} : value;
}

int Fg_FabrixBoard::getHapRegisterByName(const char* name, int* err) {
    mFg_Log->Func("Fg_FabrixBoard::getHapRegisterByName");
    const int handle = HapGetRegisterByName(mPtrToDesign.get(), name);
    if (handle == 0 && err != nullptr) *err = FG_REGISTER_NOT_FOUND;
    return handle;
}

int Fg_FabrixBoard::getRegisterBitRange(int nr, int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::getRegisterBitRange");
    return HapGetRegisterBitRange(mPtrToDesign.get(), nr);
}

const char* Fg_FabrixBoard::getRegisterName(int nr, int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::getRegisterName");
    return HapGetRegisterName(mPtrToDesign.get(), nr);
}

int Fg_FabrixBoard::getRegisterDirection(int nr, int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::getRegisterDirection");
    return HapGetRegisterDirection(mPtrToDesign.get(), nr);
}

int Fg_FabrixBoard::getNrOfRegister(int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::getNrOfRegister");
    return HapGetNrOfRegister(mPtrToDesign.get());
}

int Fg_FabrixBoard::getRegisterByNumber(int nr, int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::getRegisterByNumber");
    return nr <= 0 ? 0 : nr + 1;
}

const char* Fg_FabrixBoard::getDesignName() const { return HapGetUserInfoByName(mPtrToDesign.get(), "DESIGN_NAME"); }

dma_mem* Fg_FabrixBoard::fbSetVirtualUserBuffer(const size_t size, const frameindex_t noOfBuffer, int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::fbSetVirtualUserBuffer");
    return TavoGetVirtualUserBuffer(mPtrToBoard, size, noOfBuffer);
}

int Fg_FabrixBoard::fbFreeVirtualUserBuffer(dma_mem* mem) {
    mFg_Log->Func("Fg_FabrixBoard::fbFreeVirtualUserBuffer");
    return TavoFreeVirtualUserBuffer(mPtrToBoard, mem);
}

int Fg_FabrixBoard::fbAddVirtualUserBuffer(dma_mem* mem, void* buffer, size_t size, frameindex_t bufferIndex) {
    mFg_Log->Func("Fg_FabrixBoard::fbAddVirtualUserBuffer");
    return TavoAddUserBuffer(mPtrToBoard, mem, buffer, size, bufferIndex);
}

int Fg_FabrixBoard::fbDeleteVirtualUserBuffer(dma_mem* memHandle, frameindex_t bufferIndex) {
    mFg_Log->Func("Fg_FabrixBoard::fbDeleteVirtualUserBuffer");
    return TavoDelUserBuffer(mPtrToBoard, memHandle, bufferIndex);
}

frameindex_t Fg_FabrixBoard::fbGetNrOfSubBuffer(dma_mem* mem) {
    mFg_Log->Func("Fg_FabrixBoard::fbGetNrOfSubBuffer");
    return TavoGetNrOfSubbuffer(mPtrToBoard, mem);
}

size_t Fg_FabrixBoard::fbGetBufferSize(dma_mem* mem) {
    mFg_Log->Func("Fg_FabrixBoard::fbGetBufferSize");
    return TavoGetBufferSize(mPtrToBoard, mem);
}

int Fg_FabrixBoard::dmaVirtualReadExtAsync(int nPort, frameindex_t nStartSubbuf, dma_mem* pMem, int nMode,
                                           frameindex_t nNrOfTransfer, int nTimeout) {
    mFg_Log->Func("Fg_FabrixBoard::dmaVirtualReadExtAsync");
    return TavoDmaStartRead(mPtrToBoard, nPort, nStartSubbuf, 0, pMem, nMode, nNrOfTransfer, 0, nTimeout);
}

int Fg_FabrixBoard::dmaVirtualWriteExtAsync(int nPort, frameindex_t nStartSubbuf, size_t nDmaLength, dma_mem* pMem,
                                            int nMode, frameindex_t nNrOfTransfer, int nTimeout) {
    mFg_Log->Func("Fg_FabrixBoard::dmaVirtualWriteExtAsync");
    return TavoDmaStartWrite(mPtrToBoard, nPort, nStartSubbuf, nDmaLength, pMem, nMode, nNrOfTransfer, 0, nTimeout);
}

int Fg_FabrixBoard::dmaVirtualStopTransferExt(int port) {
    mFg_Log->Func("Fg_FabrixBoard::dmaVirtualStopTransferExt");
    return TavoDmaStop(mPtrToBoard, port, 0, 0) < 0 ? FG_DMA_STOP_FAILED : FG_OK;
}

frameindex_t Fg_FabrixBoard::dmaTestVirtualBufferStatus(int port, dma_mem* mem) {
    mFg_Log->Func("Fg_FabrixBoard::dmaTestVirtualBufferStatus");
    mFg_Log->Info("Port", port);
    return TavoDmaTestBuffer(mPtrToBoard, port, mem);
}

frameindex_t Fg_FabrixBoard::dmaVirtualWaitForBuffer(int port, frameindex_t picNo, dma_mem* mem, int timeout) {
    mFg_Log->Func("Fg_FabrixBoard::dmaVirtualWaitForBuffer");
    return TavoDmaWaitForBuffer(mPtrToBoard, port, picNo, mem, timeout);
}

int Fg_FabrixBoard::getDMATag(dma_mem* mem, frameindex_t bufferNo) {
    mFg_Log->Func("Fg_FabrixBoard::getDMATag");
    return TavoGetDmaTag(mPtrToBoard, mem, bufferNo);
}

int Fg_FabrixBoard::getDMATimeStamp(dma_mem* mem, frameindex_t bufferNo) {
    mFg_Log->Func("Fg_FabrixBoard::getDMATimeStamp");
    return TavoGetDmaTimeStamp(mPtrToBoard, mem, bufferNo);
}

uint64_t Fg_FabrixBoard::getDMATimeStampLong(dma_mem* mem, frameindex_t bufferNo) {
    mFg_Log->Func("Fg_FabrixBoard::getDMATimeStampLong");
    return TavoGetDmaTimeStampLong(mPtrToBoard, mem, bufferNo);
}

size_t Fg_FabrixBoard::getDMALength(dma_mem* mem, frameindex_t picrNo) {
    mFg_Log->Func("Fg_FabrixBoard::getDMALength");
    return TavoGetDmaLength(mPtrToBoard, mem, picrNo);
}

int Fg_FabrixBoard::userInterruptReadBuffer(uint32_t* stat, int* /*err*/, int timeout) {
    mFg_Log->Func("Fg_FabrixBoard::userInterruptReadBuffer");
    return TavoDataQueueReadBufferLong(mPtrToBoard, kInterruptQueue, stat, kInterruptWords, timeout);
}

int Fg_FabrixBoard::userInterruptReadBufferClear(int* /*err*/) {
    mFg_Log->Func("Fg_FabrixBoard::userInterruptReadBufferClear");
    return TavoDataQueueClear(mPtrToBoard, kInterruptQueue);
}

double Fg_FabrixBoard::getFPGAClk() {
    mFg_Log->Func("Fg_FabrixBoard::getFPGAClk");
    return kFpgaClkMHz;
}

double Fg_FabrixBoard::getPlxClk() {
    mFg_Log->Func("Fg_FabrixBoard::getPlxClk");
    return kPlxClkMHz;
}

int Fg_FabrixBoard::getCameraStatusExtended(unsigned int port) {
    return TavoGetCameraStatusExtended(mPtrToBoard, port);
}

void Fg_FabrixBoard::setAppletID(int id) { mAppletID = id; }
int Fg_FabrixBoard::getAppletID() { return mAppletID; }
bool Fg_FabrixBoard::checkAppletID(int id) { return id == mAppletID; }
void Fg_FabrixBoard::setAppletVersion(const unsigned int& appletVer) { mAppletVersion = appletVer; }
unsigned int Fg_FabrixBoard::getAppletVersion() { return mAppletVersion; }
void Fg_FabrixBoard::setAppletRevision(const unsigned int& appletRev) { mAppletRevision = appletRev; }
unsigned int Fg_FabrixBoard::getAppletRevision() { return mAppletRevision; }
void Fg_FabrixBoard::setIsDualDesign(bool value) { mIsTwoCamModel = value; }
bool Fg_FabrixBoard::getIsDualDesign() { return mIsTwoCamModel; }
fpga_design* Fg_FabrixBoard::getDesign() const { return mPtrToDesign.get(); }
Fg_Log* Fg_FabrixBoard::getLog() const { return mFg_Log.get(); }
