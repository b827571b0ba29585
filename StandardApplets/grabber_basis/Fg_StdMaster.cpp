#include "StandardApplets/grabber_basis/Fg_StdMaster.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_ImageControl.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/PSControl.h"
#include "StandardApplets/grabber_basis/ParameterInfoBuilderXML.h"
#include "StandardApplets/grabber_basis/Ports.h"
#include "fabrix/result_codes.h"

namespace {

constexpr int kInitialWidthFactor = 4;
constexpr int kGray16Format = 1;  // FG_FORMAT entry FG_GRAY16

struct ScalingFactor {
    int width;
    int height;
};

/// Pixels and lines of one register unit, by camera category. Categories 0 and 2 depend on the format, see below.
// clang-format off
constexpr std::array<ScalingFactor, 32> kScalingFactors{{
    {4, 1}, {4, 1}, {4, 1}, {2, 1},  {1, 1}, {2, 1}, {1, 1}, {4, 1},   // 0 to 7
    {2, 1}, {1, 1}, {4, 1}, {2, 1},  {8, 1}, {8, 1}, {2, 1}, {4, 1},   // 8 to 15
    {6, 3}, {6, 3}, {8, 1}, {1, 1},  {4, 1}, {4, 1}, {8, 1}, {8, 1},   // 16 to 23
    {4, 1}, {1, 1}, {2, 1}, {4, 1},  {8, 1}, {3, 1}, {16, 1}, {6, 1},  // 24 to 31
}};
// clang-format on
constexpr int kGray16WidthFactor = 2;  // categories 0 and 2

ScalingFactor scalingFactor(int category, int format) {
    if (category < 0 || category >= static_cast<int>(kScalingFactors.size())) return {1, 1};
    ScalingFactor factor = kScalingFactors[static_cast<size_t>(category)];
    if ((category == 0 || category == 2) && format == kGray16Format) factor.width = kGray16WidthFactor;
    return factor;
}

}  // namespace

Fg_StdMaster::Fg_StdMaster(std::unique_ptr<Fg_FabrixBoard> board)
    : mFg_FabrixBoard(std::move(board)),
      head(std::make_unique<Fx3ParameterHeader>()),
      mFg_ImageControl(std::make_unique<Fg_ImageControl>(mFg_FabrixBoard.get())),
      mFg_Log(mFg_FabrixBoard->getLog()) {
    mDivfactorWidth.fill(kInitialWidthFactor);
    mFg_Log->Func("Fg_StdMaster::Fg_StdMaster");
    auto control = std::make_unique<PSControl>(this);
    mRSControl = control.get();
    mFg_ImageControl->setRSControl(mRSControl);
    head->addModule(control.release(), 0);
}

Fg_StdMaster::~Fg_StdMaster() {
    // The modules go first: what they write while they are destroyed needs the board.
    head->deleteAllModules();
    mFg_Log->Func("Fg_StdMaster::~Fg_StdMaster");
}

fpga_design* Fg_StdMaster::getDesign() const { return mFg_FabrixBoard->getDesign(); }
Fg_FabrixBoard* Fg_StdMaster::getFxBoard() const { return mFg_FabrixBoard.get(); }
Fg_ImageControl* Fg_StdMaster::getImageControl() const { return mFg_ImageControl.get(); }
Fx3ParameterHeader* Fg_StdMaster::getHeader() const { return head.get(); }
RSControl* Fg_StdMaster::getController() const { return mRSControl; }

int Fg_StdMaster::Fg_configure(bool isSlave) {
    const int result = mFg_FabrixBoard->configureBoard(isSlave);
    return ErrorHandel.setErr(result < 0 ? result : FG_OK);
}

int Fg_StdMaster::Fg_getAppletId() const { return mFg_FabrixBoard->getAppletID(); }

// ---- Camera description

void Fg_StdMaster::store(PerCameraPort& values, int port, int value) {
    if (isCameraPort(port)) values[static_cast<size_t>(port)] = value;
}

int Fg_StdMaster::load(const PerCameraPort& values, int port) {
    return isCameraPort(port) ? values[static_cast<size_t>(port)] : 0;
}

const char* Fg_StdMaster::getManufactor() const { return "Generic-CameraLink"; }
const char* Fg_StdMaster::getCameraType() const { return CameraType; }
void Fg_StdMaster::setCameraType(const char* name) { CameraType = name; }
const char* Fg_StdMaster::getCameraVersion() const { return m_cameraVersion; }
void Fg_StdMaster::setCameraVersion(const char* version) { m_cameraVersion = version; }
void Fg_StdMaster::setLineAlignment(int alignment) { lineAlignment = alignment; }
int Fg_StdMaster::getLineAlignment() const { return lineAlignment; }
void Fg_StdMaster::setIsCameraColor(int isColor, int port) { store(cameraColor, port, isColor); }
int Fg_StdMaster::isCameraColor(int port) const { return load(cameraColor, port); }
int Fg_StdMaster::getIsCameraColor(int port) const { return load(cameraColor, port); }
void Fg_StdMaster::setIsArea(int isAreaCam, int port) { store(isArea, port, isAreaCam); }
int Fg_StdMaster::getIsArea(int port) const { return load(isArea, port); }
void Fg_StdMaster::setIsSeparation(bool isSeparation) { mIsSep = isSeparation; }
bool Fg_StdMaster::getIsSeparation() const { return mIsSep; }
void Fg_StdMaster::setIsMedium(bool isMedium) { mIsMed = isMedium; }
void Fg_StdMaster::setIsFull(bool isFull) { mIsFull = isFull; }

void Fg_StdMaster::setCameraCategory(int camCat, int port) {
    if (mIsMed || port == 0) mACamCategory = camCat;
    if (mIsMed || port != 0) mBCamCategory = camCat;
}

int Fg_StdMaster::getCameraCategory(int port) const { return port == 0 ? mACamCategory : mBCamCategory; }

void Fg_StdMaster::setActiveFormat(int port, int format) {
    store(mDataFormat, port, format);
    calculateImageScalingFactor(port);
}

int Fg_StdMaster::getActiveFormat(int port) const { return load(mDataFormat, port); }
void Fg_StdMaster::setActivePort(int CamPort) { mActivePort = CamPort; }
bool Fg_StdMaster::getIsTwoCamModel() const { return mFg_FabrixBoard->getIsDualDesign(); }

void Fg_StdMaster::calculateImageScalingFactor(int port) {
    const ScalingFactor factor = scalingFactor(getCameraCategory(port), getActiveFormat(port));
    store(mDivfactorWidth, port, factor.width);
    store(mDivfactorHeight, port, factor.height);
}

int Fg_StdMaster::getDivFactor(int port) {
    calculateImageScalingFactor(port);
    return isCameraPort(port) ? load(mDivfactorWidth, port) : 1;
}

int Fg_StdMaster::getDivFactorHeight(int port) {
    calculateImageScalingFactor(port);
    return isCameraPort(port) ? load(mDivfactorHeight, port) : 1;
}

int Fg_StdMaster::updateAllRegisters(int CamPort) {
    return head->updateAllParametersPS(static_cast<unsigned>(CamPort));
}

// ---- Parameters

int Fg_StdMaster::Fg_setParameter(const int param, const void* value, const unsigned int port,
                                  const FgParamTypes type) {
    return ErrorHandel.setErr(head->setParameterById(param, value, port, true, type));
}

int Fg_StdMaster::Fg_getParameter(int pParam, void* value, int pPort, const FgParamTypes type) {
    return ErrorHandel.setErr(head->getParameterById(pParam, value, pPort, type));
}

int Fg_StdMaster::Fg_getNrOfParameter() const { return head->getParamCount(); }
int Fg_StdMaster::Fg_getParameterId(int index) const { return head->getParameterId(index); }
const char* Fg_StdMaster::Fg_getParameterName(int index) const { return head->getParameterName(index); }
int Fg_StdMaster::Fg_getParameterIdByName(const char* name) const { return head->getParameterIdByName(name); }

RegisterInfo* Fg_StdMaster::Fg_getParameterInfo(int port) {
    if (!isPort(port)) return nullptr;
    head->updateAllDescriptions(false, port);
    return head->getRegisterInfo(port);
}

int Fg_StdMaster::Fg_getParameterInfoXML(Fg_Struct* /*Fg*/, int port, char* infoBuffer, size_t* infoBufferSize) {
    if (head == nullptr) return FG_TYPE_NOT_SUPPORTED;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (infoBufferSize == nullptr) return FG_INVALID_ARGUMENT;
    if (infoBuffer != nullptr && *infoBufferSize == 0) return FG_OUT_OF_RESOURCES;
    const std::string document = ParameterInfoBuilderXML(*head, *this, port).build();
    if (infoBuffer != nullptr) {
        if (document.size() >= *infoBufferSize) return FG_OUT_OF_RESOURCES;
        // The rest of the buffer becomes zeros, the terminator among them.
        std::fill(std::copy(document.begin(), document.end(), infoBuffer), infoBuffer + *infoBufferSize, '\0');
    }
    *infoBufferSize = document.size() + 1;
    return FG_OK;
}

int Fg_StdMaster::Fg_saveConfig(const char* Filename) {
    return ErrorHandel.setErr(head->saveAllParameters(Filename, this, mFg_Log));
}

int Fg_StdMaster::Fg_loadConfig(const char* Filename) {
    return ErrorHandel.setErr(head->loadAllParameters(Filename, this, mFg_Log, &ErrorHandel));
}

int Fg_StdMaster::Fg_getLastErrorNumber() const { return ErrorHandel.getErrorNumberBuffer(); }

// ---- Acquisition

/// \return the hardware path of a camera port: a one-path design serves the active port with path 0
int Fg_StdMaster::pathOf(int CamPort) const { return getIsTwoCamModel() ? CamPort : 0; }

int Fg_StdMaster::Fg_AcquireEx(int CamPort, frameindex_t PicCount, int nFlag, dma_mem* mem) {
    mFg_Log->Func("Fg_StdMaster::Fg_AcquireEx");
    return Fg_Acquire(CamPort, PicCount, nFlag, mem);
}

int Fg_StdMaster::Fg_Acquire(int CamPort, frameindex_t PicCount, int nFlag, dma_mem* mem) {
    mFg_Log->Func("Fg_StdMaster::Fg_Acquire");
    if (!isPort(CamPort)) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    mFg_ImageControl->setMemory(CamPort, mem);
    if (nFlag != 1 && nFlag != 2) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    const bool portChanged = !getIsTwoCamModel() && CamPort != mActivePort;
    if (portChanged) mActivePort = CamPort;
    if (!mFg_FabrixBoard->isBoardConfigured()) return ErrorHandel.setErr(FG_NOT_CONFIGURED);
    // The one path takes over the new port's settings; single failures show in the pictures, not here.
    if (portChanged) std::ignore = updateAllRegisters(CamPort);
    const int path = pathOf(CamPort);
    if (mFg_ImageControl->getImageAcqStarted(path)) return ErrorHandel.setErr(FG_ALREADY_STARTED);
    return ErrorHandel.setErr(startOnPath(path, PicCount, nFlag, mem));
}

int Fg_StdMaster::startOnPath(int path, frameindex_t PicCount, int nFlag, dma_mem* mem) {
    mFg_ImageControl->setImageAcqStarted(path, true);
    // The DMA alone decides whether a start succeeds.
    std::ignore = mRSControl->writeReset(static_cast<unsigned>(path));
    const int started = mFg_ImageControl->StartAcquire(PicCount, nFlag, path, mem);
    std::ignore = mRSControl->writeEnableDisableGlobalwork(static_cast<unsigned>(path), true);
    if (started < 0) {
        mFg_ImageControl->setImageAcqStarted(path, false);
        return started;
    }
    mFg_ImageControl->setImageDMATransferActive(path, true);
    return FG_OK;
}

int Fg_StdMaster::Fg_stopAcquireEx(int CamPort, dma_mem* memHandle) {
    mFg_Log->Func("Fg_StdMaster::Fg_stopAcquireEx");
    if (memHandle == nullptr) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    if (!mFg_FabrixBoard->isBoardConfigured()) return ErrorHandel.setErr(FG_NOT_CONFIGURED);
    return ErrorHandel.setErr(mFg_ImageControl->stopImageAcquire(pathOf(CamPort)));
}

frameindex_t Fg_StdMaster::Fg_getLastPicNumberEx(int CamPort, dma_mem* pMem) {
    mFg_Log->Func("Fg_StdMaster::Fg_getLastPicNumberEx");
    if (pMem == nullptr) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    const frameindex_t number = mFg_ImageControl->getLastPicNumberEx(CamPort, pMem);
    ErrorHandel.setErr(number < 0 ? number : FG_OK);
    return number;
}

frameindex_t Fg_StdMaster::Fg_getLastPicNumberBlockingEx(frameindex_t PicNr, int CamPort, int Timeout, dma_mem* pMem) {
    mFg_Log->Func("Fg_StdMaster::Fg_getLastPicNumberBlockingEx");
    if (Timeout < 0 || pMem == nullptr) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    const frameindex_t number = mFg_ImageControl->getLastPicNumberBlockingEx(pathOf(CamPort), PicNr, Timeout, pMem);
    ErrorHandel.setErr(number <= 0 ? number : FG_OK);
    return number;
}

frameindex_t Fg_StdMaster::Fg_getStatusEx(int nParam, frameindex_t nData, int nCamPort, dma_mem* pMem) {
    mFg_Log->Func("Fg_StdMaster::Fg_getStatusEx");
    if (!isPort(nCamPort)) return ErrorHandel.setErr(FG_INVALID_ARGUMENT);
    return mFg_ImageControl->getImageStatus(nCamPort, nParam, nData, pMem);
}
