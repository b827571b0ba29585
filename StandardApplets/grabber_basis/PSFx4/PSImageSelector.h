#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSImageSelector.h"

/// Parameter side of the image selector: the length of a sequence of images, and which of them is grabbed.
class PSImageSelector : public RSImageSelector {
public:
    explicit PSImageSelector(Fg_StdMaster* FG_base);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    int setParamToRs(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    /// The widths of port 0's registers limit both ports. Period and index are limited independently.
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    unsigned largestContent(const BlockRegister& reg);
};
