#pragma once

#include <array>
#include <span>

#include "StandardApplets/grabber_basis/RSFx4/RSCamPort.h"

struct EnumField_;

/// Parameter side of the camera port: input format, camera type, port configuration, data valid, output format,
/// pixel depth, alignment and, for serial RGB, the order of the colour components.
///
/// Which formats it offers follows the master's description of the camera, which it sets when it is made and when
/// one of FG_CAMPORT_CONFIG, FG_FORMAT and FG_CAMERA_TYPE is written.
class PSCamPort : public RSCamPort {
public:
    PSCamPort(Fg_StdMaster* FG_base, bool isCamPortArea, bool isCamPortMedium, bool isCamPortColor, bool isCamPortBayer,
              bool isCamPortFull);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// Stores the value, tells the master what follows from it and redoes the port's limits and flags.
    int setParamToRs(int id, const void* val, unsigned int port) override;
    /// As the register side, but a new output format or configuration first rewrites an input format that is not
    /// allowed (any more).
    int updateParameter(unsigned int port, int parameter) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;
    /// Creates the parameters; those for serial RGB only where a colour camera can use them.
    virtual void createParameters();

private:
    /// The entries of an enumeration and its default.
    struct Choice {
        std::span<const EnumField_> entries;
        int defaultValue;
    };

    /// Where the values of a parameter are cached.
    struct Cache {
        int id;
        std::array<unsigned, kPorts> RSCamPort::*values;
    };
    static const std::array<Cache, 9> kCaches;

    /// \return the cached value of a parameter on a port, or null
    unsigned* cacheOf(int id, unsigned port);
    void tellMaster(int id, unsigned value, unsigned port);
    void applyCategoryRule(unsigned port);
    [[nodiscard]] bool isSerialRgbPossible(unsigned port) const;
    [[nodiscard]] bool hasRgbMapping() const;
    [[nodiscard]] Choice inputFormats(unsigned port) const;
    [[nodiscard]] Choice outputFormats(unsigned port) const;
    void limitRgbMapping(unsigned port, bool updateDefault);

    bool m_MediumCamport;
    bool m_ColorCamport;
    bool m_AreaCamport;
};
