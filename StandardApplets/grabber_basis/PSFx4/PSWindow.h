#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSWindow.h"

/// Parameter side of the acquisition window: width, height and offsets in pixels.
class PSWindow : public RSWindow {
public:
    /// \param maxW largest width that the applet allows
    /// \param stdWidth default width \param stdHeight default height
    /// \param stdModuloWidth horizontal step; -1 takes the master's width factor at the first limit setting
    PSWindow(Fg_StdMaster* FG_base, int maxW, int stdWidth, int stdHeight, int stdModuloWidth);

    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// Stores under port 0 while one camera uses both connectors.
    int setParamToRs(int id, const void* val, unsigned int port) override;
    /// Tells the image control the new picture size, then writes the register.
    int updateParameter(unsigned int port, int parameter) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    int widthMaximum(int unitPixels);

    int maxWidth;
    int defaultWidth;
    int defaultHeight;
    int mModuloWidth;
};
