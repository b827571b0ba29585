#pragma once

#include <array>
#include <memory>

#include "StandardApplets/grabber_basis/Fg_Error.h"
#include "StandardApplets/grabber_basis/Fg_Master.h"
#include "fabrix/parameter_info.h"
#include "fabrix/types.h"

class Fg_FabrixBoard;
class Fg_ImageControl;
class Fg_Log;
class Fx3ParameterHeader;
class RSControl;

/// The one object per grabber that the host's handle points to. Routes every exported function to the registry, the
/// image control or the board, records the result as the grabber's last error, and holds the description of the
/// camera that the modules consult.
///
/// Owned by the host from Std_entry to Fg_FreeGrabber. Owns registry, image control and board. Takes no lock: the
/// host serialises the calls, only a blocking wait may run while another thread stops. Camera description accessors
/// test nothing but the port: a port that does not exist is not stored and reads as 0.
class Fg_StdMaster : public Fg_Master {
public:
    /// Takes the board over and makes registry, image control and control module.
    explicit Fg_StdMaster(std::unique_ptr<Fg_FabrixBoard> board);
    ~Fg_StdMaster() override;

    [[nodiscard]] fpga_design* getDesign() const override;
    [[nodiscard]] Fg_FabrixBoard* getFxBoard() const;
    [[nodiscard]] Fg_ImageControl* getImageControl() const;
    [[nodiscard]] Fx3ParameterHeader* getHeader() const;
    [[nodiscard]] RSControl* getController() const;
    /// Configures the FPGA with the design.
    /// \return 0 or the board's code, recorded
    int Fg_configure(bool isSlave);
    [[nodiscard]] int Fg_getAppletId() const;

    /// \name Camera description
    /// Texts are borrowed and must be static. Categories and formats are the camera port's.
    /// @{
    [[nodiscard]] const char* getManufactor() const;
    [[nodiscard]] const char* getCameraType() const;
    void setCameraType(const char* name);
    [[nodiscard]] const char* getCameraVersion() const;
    void setCameraVersion(const char* version);
    void setLineAlignment(int alignment);
    [[nodiscard]] int getLineAlignment() const;
    void setIsCameraColor(int isColor, int port);
    [[nodiscard]] int isCameraColor(int port) const;
    [[nodiscard]] int getIsCameraColor(int port) const;
    void setIsArea(int isAreaCam, int port);
    [[nodiscard]] int getIsArea(int port) const;
    void setIsSeparation(bool isSeparation);
    [[nodiscard]] bool getIsSeparation() const;
    /// Medium: one camera uses both connectors.
    void setIsMedium(bool isMedium);
    [[nodiscard]] bool getIsMedium() const { return mIsMed; }
    void setIsFull(bool isFull);
    [[nodiscard]] bool getIsFull() const { return mIsFull; }
    /// Stores the category, in the medium configuration for both ports.
    void setCameraCategory(int camCat, int port);
    [[nodiscard]] int getCameraCategory(int port) const;
    /// Stores the format and recomputes the port's factors.
    void setActiveFormat(int port, int format);
    [[nodiscard]] int getActiveFormat(int port) const;
    /// @}

    /// The port that a one-path design serves; stored unchecked, as configuration files bring it.
    void setActivePort(int CamPort);
    [[nodiscard]] int getActivePort() const { return mActivePort; }
    /// \return whether the design has two independent acquisition paths
    [[nodiscard]] bool getIsTwoCamModel() const;

    /// Sets the factors of a port from its camera category and format.
    void calculateImageScalingFactor(int port);
    /// Recompute the factors, then return pixels or lines of one register unit, at least 1.
    int getDivFactor(int port);
    int getDivFactorHeight(int port);
    /// Lets every module rewrite its registers for a port.
    /// \return the sum of their results
    int updateAllRegisters(int CamPort);

    /// \name Exported functions of the same names (see fabrix/applet.h)
    /// @{
    int Fg_setParameter(const int param, const void* value, const unsigned int port, const FgParamTypes type);
    int Fg_getParameter(int pParam, void* value, int pPort, const FgParamTypes type);
    [[nodiscard]] int Fg_getNrOfParameter() const;
    [[nodiscard]] int Fg_getParameterId(int index) const;
    [[nodiscard]] const char* Fg_getParameterName(int index) const;
    [[nodiscard]] int Fg_getParameterIdByName(const char* name) const;
    RegisterInfo* Fg_getParameterInfo(int port);
    int Fg_getParameterInfoXML(Fg_Struct* Fg, int port, char* infoBuffer, size_t* infoBufferSize);
    int Fg_saveConfig(const char* Filename);
    int Fg_loadConfig(const char* Filename);
    [[nodiscard]] int Fg_getLastErrorNumber() const;
    int Fg_AcquireEx(int CamPort, frameindex_t PicCount, int nFlag, dma_mem* mem);
    int Fg_Acquire(int CamPort, frameindex_t PicCount, int nFlag, dma_mem* mem);
    int Fg_stopAcquireEx(int CamPort, dma_mem* memHandle);
    frameindex_t Fg_getLastPicNumberEx(int CamPort, dma_mem* pMem);
    frameindex_t Fg_getLastPicNumberBlockingEx(frameindex_t PicNr, int CamPort, int Timeout, dma_mem* pMem);
    frameindex_t Fg_getStatusEx(int nParam, frameindex_t nData, int nCamPort, dma_mem* pMem);
    /// @}

private:
    static constexpr size_t kCameraPorts = 4;
    using PerCameraPort = std::array<int, kCameraPorts>;
    static bool isCameraPort(int port) { return port >= 0 && port < static_cast<int>(kCameraPorts); }
    static void store(PerCameraPort& values, int port, int value);
    static int load(const PerCameraPort& values, int port);
    [[nodiscard]] int pathOf(int CamPort) const;
    int startOnPath(int path, frameindex_t PicCount, int nFlag, dma_mem* mem);

    PerCameraPort mDivfactorWidth;
    PerCameraPort mDivfactorHeight{};
    int mACamCategory = 0;
    int mBCamCategory = 0;
    int mActivePort = 0;
    PerCameraPort mDataFormat{};
    const char* m_cameraVersion = "1.0";
    // Destroyed in the order image control, registry, board.
    std::unique_ptr<Fg_FabrixBoard> mFg_FabrixBoard;
    std::unique_ptr<Fx3ParameterHeader> head;
    std::unique_ptr<Fg_ImageControl> mFg_ImageControl;
    RSControl* mRSControl = nullptr;  // the registry's
    bool mIsSep = false;
    bool mIsMed = false;
    bool mIsFull = false;
    Fg_Error ErrorHandel;
    Fg_Log* mFg_Log;  // the board's
    const char* CameraType = "";
    PerCameraPort cameraColor{};
    int lineAlignment = 0;
    PerCameraPort isArea{};
};
