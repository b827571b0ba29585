#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"

/// Parameter side of the control block: active port, time-out, camera status, identity, clocks, the access override
/// and three text queries.
class PSControl : public RSControl {
public:
    explicit PSControl(Fg_StdMaster* FG_base);

    /// A first read of a measured clock blocks for 100 ms.
    int getParamFromRs(int id, void* val, unsigned int port) override;
    int setParamToRs(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    /// One parameter that reads as a 32-bit integer.
    struct IntegerReader {
        int id;
        unsigned (PSControl::*read)(unsigned port);
    };
    static const IntegerReader kIntegerReaders[];

    unsigned readActivePort(unsigned port);
    unsigned readTimeout(unsigned port);
    unsigned readCameraStatus(unsigned port);
    unsigned readCameraStatusExtended(unsigned port);
    unsigned readTwoCamModel(unsigned port);
    unsigned readLineAlignment(unsigned port);
    unsigned readAppletId(unsigned port);
    unsigned readAppletVersion(unsigned port);
    unsigned readAppletRevision(unsigned port);
    unsigned readDmaStatus(unsigned port);
    unsigned readGlobalAccess(unsigned port);

    [[nodiscard]] bool hasCamera(unsigned port) const;
    unsigned connectorStatus(unsigned connector);
    double pciExpressClockMHz();
    double measurePCIe();
    int answerTextQuery(int id, void* text);
    void answerRegisterQuery(void* text);

    double mMeasuredPciExpressFrequency = 0.0;  ///< 0 until the first measurement
};
