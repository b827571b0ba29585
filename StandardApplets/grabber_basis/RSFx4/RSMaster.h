#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

#include "StandardApplets/grabber_basis/RSFx4/BlockRegister.h"
#include "fabrix/result_codes.h"

class Fg_FabrixBoard;
class Fg_StdMaster;
class Fx3ParameterHeader;
class ShadingMaster;

/// Base of every feature module. A module is a pair of classes: the register side (RS...) holds the block's register
/// handles and cached values per port and writes the registers; the parameter side (PS...), derived from it,
/// publishes the block's parameters. The registry drives modules through the virtual operations below.
///
/// Owned by the registry once added. Borrows master, board and registry, which outlive it. Runs on the thread of the
/// application call that reached it. Operations answer FG_INVALID_PORT for a port that does not exist and touch
/// nothing then.
class RSMaster {
public:
    /// \param Fg_Base the master, whose board and registry exist already
    explicit RSMaster(Fg_StdMaster* Fg_Base);
    /// A module without master: every field 0.
    RSMaster();
    RSMaster(const RSMaster&) = delete;
    RSMaster& operator=(const RSMaster&) = delete;
    virtual ~RSMaster();

    /// Forgets register lookups and their status.
    virtual void makeRegistersNull();
    /// Writes the registers behind a parameter.
    /// \return 0 or the first failing write's code; the base has no registers and returns 0
    virtual int updateParameter(unsigned int port, int parameter);
    /// Writes every register of the block.
    virtual int updateAllParameters(unsigned int port);
    /// Puts the value of a parameter into the caller's memory; FG_INVALID_ARGUMENT for an unknown one.
    virtual int getParamFromRs(int id, void* val, unsigned int port) = 0;
    /// Stores the value of a parameter, snapped to what the hardware can do; FG_INVALID_ARGUMENT for an unknown one.
    virtual int setParamToRs(int id, const void* val, unsigned int port) = 0;
    /// Tests a value of the module's own structure type.
    /// \return FG_ERROR: the base has none
    virtual int checkParam(int id, const void* val, unsigned int port);
    /// Writes a parameter of a structure type into a configuration file.
    /// \return FG_ERROR: the base has none
    virtual int saveParmeter(int port, int id, const char* key, std::FILE* file);
    /// The counterpart of saveParmeter.
    virtual int loadParameter(int port, int id, char* key, std::FILE* file);
    /// Publishes descriptions, limits, flags and groups, in this order.
    /// \param updateDefault whether the defaults are written as well
    /// \return 0
    virtual int addStandardPS(unsigned int port, bool updateDefault);
    virtual void setRegisterInfoTree(unsigned int port) = 0;
    /// The three description steps of a module that publishes parameters; the base throws std::runtime_error.
    virtual void setDescriptions();
    virtual void setFlags(unsigned int port);
    virtual void setLimits(unsigned int port, bool updateDefault);
    /// \return a new shading object, owned by the caller
    virtual ShadingMaster* Fg_AllocShading(int set, int port);
    /// Deletes a shading object; null is accepted.
    /// \return 0
    virtual int Fg_FreeShading(ShadingMaster* sm);
    /// \return path of the documentation page, relative to the documentation root; null without one
    virtual const char* getDocModuleURL(int id) = 0;

    /// \return 0, or the code of the last failed register lookup
    [[nodiscard]] int getRegisterInitSuccess() const;
    /// \return whether the design has an independent second camera port
    [[nodiscard]] bool IsTwoCamModel() const;
    [[nodiscard]] int getActivePort() const;
    void setActivePort(int port);
    [[nodiscard]] Fg_FabrixBoard* getBoard() const;
    [[nodiscard]] Fg_StdMaster* getFgBase() const;
    [[nodiscard]] Fx3ParameterHeader* getHeader() const;
    /// Redoes the descriptions of every module on both ports.
    /// \return 0
    int updateAllDescriptions(bool setDefault);

protected:
    /// Looks a register up. A missing one leaves handle and width 0 and the status FG_REGISTER_NOT_FOUND.
    /// \param width receives the width in bits; may be null
    void initRegister(int* reg, const char* name, unsigned int* width);
    /// Looks the registers of a block up: all names of port 0, then, on a two-camera design, those of port 1;
    /// otherwise both ports share port 0's registers.
    void initBlockRegisters(std::span<const BlockRegisterRow> rows);
    /// Looks the registers of both ports up whatever the design, those of port 0 first; a row without a name for port 1
    /// shares port 0's.
    void initBothPorts(std::span<const BlockRegisterRow> rows);
    /// Lets both ports use port 0's registers.
    void shareRegisters(std::span<const BlockRegisterRow> rows);

    /// Writes a value to the port's register; while one camera uses both connectors, port 0's value goes to both
    /// slots, the second only when the first was written.
    /// \param valueOf gives the value of a port
    /// \return the result of the last write
    template <class ValueOf>
    int writeForPorts(unsigned int port, const BlockRegister& reg, ValueOf valueOf) {
        if (!isPort(port)) return FG_INVALID_PORT;
        if (!isMedium()) return writeHandle(reg.handle[port], valueOf(port));
        const uint64_t value = valueOf(0u);
        const int first = writeHandle(reg.handle[0], value);
        return first != FG_OK ? first : writeHandle(reg.handle[1], value);
    }

    void initRows(std::span<const BlockRegisterRow> rows, unsigned int port);
    int writeHandle(int handle, uint64_t value);
    [[nodiscard]] bool isMedium() const;

    Fg_FabrixBoard* mBoard = nullptr;
    Fg_StdMaster* mFg_Base = nullptr;
    int mRegisterInitSuccess = FG_OK;
    Fx3ParameterHeader* header = nullptr;
};
