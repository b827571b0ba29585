#include <fmt/format.h>

#include <CLI/App.hpp>
#include <string>

#include "Command.h"
#include "Session.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "host/RuntimeLibraries.h"

namespace quillon::tool {

namespace {

std::string linkText(const host::Grabber& grabber) {
    int32_t status = 0;
    if (grabber.read(FG_CAMSTATUS, status) < 0) return "unknown";
    return status != 0 ? "open" : "closed";
}

class DevicesCommand : public Command {
public:
    int run(Session& session) override {
        const host::Grabber& grabber = session.grabber();
        const bool isSimulated = host::isSoftwareBoard(host::loadRuntimeLibraries(session.applet()).front());
        const int boardType = session.applet().infoNumber(GET_BOARD_TYPE);
        if (session.isJson()) {
            printJson(Json::array({
                {{"board", session.board()},
                 {"kind", isSimulated ? "software" : "hardware"},
                 {"boardType", boardType},
                 {"design", grabber.designName()},
                 {"link", linkText(grabber)}}
            }));
            return kExitOk;
        }
        Table table;
        table.add({"BOARD", "KIND", "TYPE", "DESIGN", "CAMERA LINK"});
        table.add({fmt::format("{}", session.board()), isSimulated ? "software board (simulated)" : "hardware",
                   fmt::format("{} (0x{:X})", boardType, boardType), grabber.designName(), linkText(grabber)});
        fmt::print("{}", table.text());
        if (isSimulated) fmt::print("The software board plays as many boards as asked for: --board N uses another.\n");
        return kExitOk;
    }
};

}  // namespace

std::unique_ptr<Command> makeDevicesCommand(CLI::App&) { return std::make_unique<DevicesCommand>(); }

}  // namespace quillon::tool
