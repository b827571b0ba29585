#pragma once

#include <map>
#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"

/// A module that notes what the registry asks of it, and answers as a test wants. Calls are lines such as
/// "set 1 port=0", "update 1 port=0", "all port=1", "describe port=0 defaults=1", each after the module's name.
class ProbeModule : public RSMaster {
public:
    ProbeModule(Fg_StdMaster* master, std::string name, std::vector<std::string>& calls)
        : RSMaster(master), mName(std::move(name)), mCalls(calls) {}
    ~ProbeModule() override { note("delete"); }

    /// Makes a record that the registry owns.
    Fx3Parameter& make(int id, FX3ParamType type, const char* defName = "FG_PROBE", bool updateAll = false) {
        return *new Fx3Parameter(this, type, "Probe", defName, id, "[probe]", updateAll);
    }

    int updateParameter(unsigned port, int id) override {
        note("update " + std::to_string(id) + " port=" + std::to_string(port));
        return updateResults.contains(id) ? updateResults[id] : 0;
    }
    int updateAllParameters(unsigned port) override {
        note("all port=" + std::to_string(port));
        return allResult;
    }
    int getParamFromRs(int id, void* val, unsigned port) override {
        note("get " + std::to_string(id) + " port=" + std::to_string(port));
        putValue(val, 4711);
        return 0;
    }
    int setParamToRs(int id, const void*, unsigned port) override {
        note("set " + std::to_string(id) + " port=" + std::to_string(port));
        if (portToSet >= 0) setActivePort(portToSet);
        return setResult;
    }
    int checkParam(int id, const void*, unsigned port) override {
        note("check " + std::to_string(id) + " port=" + std::to_string(port));
        return 0;
    }
    int addStandardPS(unsigned port, bool updateDefault) override {
        note("describe port=" + std::to_string(port) + " defaults=" + std::to_string(updateDefault));
        return 0;
    }
    void setRegisterInfoTree(unsigned) override {}
    const char* getDocModuleURL(int) override { return "probe.html"; }

    int setResult = 0;
    int allResult = 0;
    int portToSet = -1;  ///< the active port that a write sets; -1 sets none
    std::map<int, int> updateResults;

private:
    void note(const std::string& call) { mCalls.push_back(mName + ": " + call); }

    std::string mName;
    std::vector<std::string>& mCalls;
};
