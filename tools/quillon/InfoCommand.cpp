#include <fmt/format.h>

#include <CLI/App.hpp>
#include <array>

#include "Command.h"
#include "Session.h"
#include "Table.h"
#include "ToolError.h"
#include "host/RuntimeLibraries.h"

namespace quillon::tool {

namespace {

struct TextRow {
    const char* label;
    AppletInfos question;
};
constexpr std::array kTexts{
    TextRow{"name",        GET_INFO_FRIENDLY_NAME},
    TextRow{"description", GET_INFO_DESCRIPTION  },
    TextRow{"tags",        GET_INFO_TAGS         },
    TextRow{"design id",   GET_HAP_ID            },
};

struct CountRow {
    const char* label;
    AppletInfos question;
};
constexpr std::array kCounts{
    CountRow{"ports",        GET_NR_OF_PORTS},
    CountRow{"cameras",      GET_NR_OF_CAMS },
    CountRow{"DMA channels", GET_NR_OF_DMAS },
};

void addApplet(Table& table, const host::AppletLibrary& applet) {
    table.add({"library", applet.path().string()});
    for (const TextRow& row : kTexts) table.add({row.label, applet.infoText(row.question)});
    const int version = applet.infoNumber(GET_VERSION);
    table.add({"version", fmt::format("{}.{}", version >> 16, version & 0xFFFF)});
    const int boardType = applet.infoNumber(GET_BOARD_TYPE);
    table.add({"board type", fmt::format("{} (0x{:X})", boardType, boardType)});
    for (const CountRow& row : kCounts) table.add({row.label, fmt::format("{}", applet.infoNumber(row.question))});
    table.add({"icon", fmt::format("{} bytes", applet.iconSize())});
}

void addBoard(Table& table, const host::AppletLibrary& applet, const host::Grabber& grabber) {
    table.add({"applet id", fmt::format("{} (0x{:X})", grabber.appletId(), grabber.appletId())});
    table.add({"design", grabber.designName()});
    const auto libraries = host::loadRuntimeLibraries(applet);
    for (const host::RuntimeLibrary& library : libraries) table.add({library.fileName, library.path});
    table.add({"board", host::isSoftwareBoard(libraries.front()) ? "software board (simulated)" : "hardware"});
}

class InfoCommand : public Command {
public:
    int run(Session& session) override {
        Table table;
        addApplet(table, session.applet());
        try {
            addBoard(table, session.applet(), session.grabber());
        } catch (const ToolError&) {
            // What the applet says of itself is shown even when no board opens.
            fmt::print("{}", table.text());
            throw;
        }
        fmt::print("{}", table.text());
        return kExitOk;
    }
};

}  // namespace

std::unique_ptr<Command> makeInfoCommand(CLI::App&) { return std::make_unique<InfoCommand>(); }

}  // namespace quillon::tool
