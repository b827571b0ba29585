#pragma once

#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"

class Fx3Parameter;

/// Publishes every register of the design as a parameter of its own: register k, from 1, as parameter
/// FG_DIRECT_REGISTER_BASE + k under the name "DRA_" and its own. The registers are the same on every port, which
/// values therefore ignore.
class PSDirectReg : public RSMaster {
public:
    /// Publishes the registers that have a name; none when the board or its design has none.
    explicit PSDirectReg(Fg_StdMaster* master);

    /// Reads the register: its low 32 bits, all of them set when the board refuses the read.
    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// Writes all 32 bits of the value, whatever the register's width.
    /// \return FG_INVALID_ARGUMENT for an identifier that is no register's, else the result of the write
    int setParamToRs(int id, const void* val, unsigned int port) override;
    /// Places the registers into the information tree. Limits, flags and descriptions stay as they were made, so the
    /// access override does not reach them.
    int addStandardPS(unsigned int port, bool updateDefault) override;
    /// Must not be called.
    void setRegisterInfoTree(unsigned int port) override;
    /// \return null: raw registers have no page
    const char* getDocModuleURL(int id) override;

private:
    void publishRegister(int number);
    [[nodiscard]] Fx3Parameter* recordOf(int id) const;
};
