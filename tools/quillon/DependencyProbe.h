#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// What was seen when another parameter took another value.
struct Dependency {
    std::string name;     ///< the other parameter
    std::string effects;  ///< what changed, for example "access, limits"
    std::string unlock;  ///< a setting that makes the parameter writable, "FG_TRIGGERMODE=GRABBER_CONTROLLED"; or empty
};

/// Finds out by trying what a parameter depends on: each parameter of its top group, and the one that locks all, takes
/// other values in turn, and what changes is noted. Every value is put back. It writes to the board, so no acquisition
/// may run.
class DependencyProbe {
public:
    /// \param restore brings a grabber back into the state in which the description was asked for; called when a value
    ///        cannot simply be put back. It returns the grabber to go on with
    DependencyProbe(host::Grabber& grabber, int port, std::function<host::Grabber&()> restore);

    /// \param name parameter of the grabber
    [[nodiscard]] std::vector<Dependency> run(const std::string& name);

private:
    /// What another parameter may change of a parameter.
    struct Look {
        host::ParameterInfo parameter;
        bool hasValue = false;
        host::ParameterValue value;
    };

    [[nodiscard]] Look look(const std::string& name) const;
    Dependency tryOut(const Look& before, const host::ParameterInfo& other);
    void putBack(const Look& before, const host::ParameterInfo& other, const host::ParameterValue& value);

    host::Grabber* mGrabber;
    const int mPort;
    std::function<host::Grabber&()> mRestore;
};

}  // namespace quillon::tool
