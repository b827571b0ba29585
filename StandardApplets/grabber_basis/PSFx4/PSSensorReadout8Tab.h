#pragma once

#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"
#include "StandardApplets/grabber_basis/RSFx4/RSSensorReadout8Tab.h"

/// Parameter side of the sensor readout: one enumeration names the order in which the camera's taps deliver a line.
class PSSensorReadout8Tab : public RSSensorReadout8Tab {
public:
    /// \param taps number of taps that the camera may have
    PSSensorReadout8Tab(Fg_StdMaster* master, int taps);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    int setParamToRs(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    [[maybe_unused]] Fg_LutFileParser lutParser;  // not used by this applet
};
