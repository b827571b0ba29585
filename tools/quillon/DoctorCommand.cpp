#include <fmt/format.h>

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "Session.h"
#include "Table.h"
#include "Terminal.h"
#include "ToolError.h"
#include "UsedRegisters.h"
#include "ValueJson.h"
#include "host/HostError.h"
#include "host/RuntimeLibraries.h"

namespace quillon::tool {

namespace {

enum class Health { Good, Note, Bad, Skipped };

/// What one examination found.
struct Finding {
    const char* subject;
    Health health;
    std::string detail;
    std::string remedy;  ///< what to do; empty when there is nothing to do
};

const char* healthText(Health health) {
    switch (health) {
        case Health::Good:
            return "ok";
        case Health::Note:
            return "note";
        case Health::Bad:
            return "FAILED";
        case Health::Skipped:
            break;
    }
    return "skipped";
}

Finding examineDirectory(const host::AppletLibrary& applet) {
    const std::optional<std::string> directory = host::installationDirectory(applet);
    if (directory) return {"installation directory", Health::Good, *directory, ""};
    return {"installation directory", Health::Bad,
            "the applet lies in no folder bin, dll, lib, lib64 or Hardware Applets",
            "put it into an installation tree, or let TAVODIR5 name one"};
}

Finding examineLibrary(const host::RuntimeLibrary& library) {
    const char* subject = library.fileName.c_str();
    if (!library.isLoaded) {
        const std::string where = library.path.empty() ? "" : library.path + ": ";
        return {subject, Health::Bad, where + library.reason,
                fmt::format("install {} in the folder lib of the installation directory", library.fileName)};
    }
    const std::string count = fmt::format(
        "{} of {} operations", library.operations - library.missingOperations.size() - library.missingOpaque.size(),
        library.operations);
    if (!library.missingOperations.empty()) {
        return {subject, Health::Bad,
                fmt::format("{}: {}; it lacks {}", library.path, count, fmt::join(library.missingOperations, ", ")),
                "install the library that belongs to this applet"};
    }
    const std::string rest = library.missingOpaque.empty() ? "" : ", the applet itself uses none of the others";
    return {subject, Health::Good, fmt::format("{}: {}{}", library.path, count, rest), ""};
}

/// \return names of the registers with this need that the loaded design lacks
std::vector<std::string> lackingRegisters(const host::AppletLibrary& applet, RegisterNeed need) {
    std::vector<std::string> names;
    for (const UsedRegister& used : usedRegisters()) {
        if (used.need != need || applet.hasDesignRegister(used.name)) continue;
        names.push_back(fmt::format("{} ({})", used.name, used.module));
    }
    return names;
}

Finding examineRegisters(const host::AppletLibrary& applet) {
    if (applet.design() == nullptr) return {"registers", Health::Skipped, "no design is loaded", ""};
    std::vector<std::string> lacking = lackingRegisters(applet, RegisterNeed::Always);
    if (applet.infoNumber(GET_NR_OF_CAMS) > 1) {
        const std::vector<std::string> more = lackingRegisters(applet, RegisterNeed::SecondCamera);
        lacking.insert(lacking.end(), more.begin(), more.end());
    }
    if (!lacking.empty()) {
        return {"registers", Health::Bad, fmt::format("the design lacks {}", fmt::join(lacking, ", ")),
                "use an applet and a libhaprt.so that belong together"};
    }
    const std::vector<std::string> features = lackingRegisters(applet, RegisterNeed::Optional);
    std::string text = "the design has every register that the applet needs";
    if (!features.empty()) text += fmt::format("; without {} some features are missing", fmt::join(features, ", "));
    return {"registers", features.empty() ? Health::Good : Health::Note, text, ""};
}

Finding examineLink(const host::Grabber& grabber) {
    int32_t status = 0;
    int32_t connectors = 0;
    if (grabber.read(FG_CAMSTATUS, status) < 0) {
        return {"camera link", Health::Note, "this applet does not tell the state of the link", ""};
    }
    std::string detail = fmt::format("FG_CAMSTATUS = {}", status);
    if (grabber.read(FG_CAMSTATUS_EXTENDED, connectors) >= 0) {
        detail += fmt::format(", FG_CAMSTATUS_EXTENDED = 0x{:X}", static_cast<uint32_t>(connectors));
    }
    if (status != 0) return {"camera link", Health::Good, detail, ""};
    return {"camera link", Health::Bad, detail + ": closed",
            "check the camera's power and that both cables sit on the right connectors"};
}

class DoctorCommand : public Command {
public:
    int run(Session& session) override {
        const bool isHealthy = examine(session);
        session.isJson() ? printObject() : printTable();
        return isHealthy ? kExitOk : kExitEnvironment;
    }

private:
    /// Each examination needs what the one before found in order.
    /// \return whether nothing failed
    bool examine(Session& session);
    /// \return whether the board is open
    bool examineBoard(Session& session);
    void printTable() const;
    void printObject() const;

    std::vector<host::RuntimeLibrary> mLibraries;
    std::vector<Finding> mFindings;
};

bool DoctorCommand::examine(Session& session) {
    try {
        const host::AppletLibrary& applet = session.applet();
        mFindings.push_back({"applet library", Health::Good, applet.path().string(), ""});
        mFindings.push_back(examineDirectory(applet));
        mLibraries = host::loadRuntimeLibraries(applet);
        for (const host::RuntimeLibrary& library : mLibraries) mFindings.push_back(examineLibrary(library));
        const bool isOpen = examineBoard(session);
        mFindings.push_back(examineRegisters(applet));
        if (isOpen) mFindings.push_back(examineLink(session.grabber()));
    } catch (const host::HostError& error) {
        mFindings.push_back({"applet library", Health::Bad, error.what(), "--applet PATH names the one to use"});
    }
    for (const Finding& finding : mFindings) {
        if (finding.health == Health::Bad) return false;
    }
    return true;
}

bool DoctorCommand::examineBoard(Session& session) {
    const char* kind = host::isSoftwareBoard(mLibraries.front()) ? "software board (simulated)" : "hardware";
    try {
        const host::Grabber& grabber = session.grabber();
        mFindings.push_back({"board", Health::Good, fmt::format("board {}, {}", session.board(), kind), ""});
        mFindings.push_back({"design", Health::Good, "loaded, its name is " + grabber.designName(), ""});
        return true;
    } catch (const ToolError& error) {
        const std::string why = error.what();
        mFindings.push_back({"board and design", Health::Bad, why.substr(0, why.find('\n')),
                             "mend what failed above; if nothing did, check that the board is free and of this type"});
        return false;
    }
}

void DoctorCommand::printTable() const {
    Table table;
    for (const Finding& finding : mFindings) {
        table.add({healthText(finding.health), finding.subject, finding.detail});
        if (!finding.remedy.empty()) table.add({"", "  what to do", finding.remedy});
    }
    fmt::print("{}", table.text(outputStyle()));
}

void DoctorCommand::printObject() const {
    Json findings = Json::array();
    for (const Finding& finding : mFindings) {
        Json object{
            {"subject", finding.subject           },
            {"state",   healthText(finding.health)},
            {"detail",  finding.detail            }
        };
        if (!finding.remedy.empty()) object["remedy"] = finding.remedy;
        findings.push_back(std::move(object));
    }
    printJson(findings);
}

}  // namespace

std::unique_ptr<Command> makeDoctorCommand(CLI::App&) { return std::make_unique<DoctorCommand>(); }

}  // namespace quillon::tool
