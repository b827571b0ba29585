#include <fmt/format.h>

#include <CLI/App.hpp>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "Session.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "host/RuntimeLibraries.h"

namespace quillon::tool {

namespace {

struct QuestionRow {
    const char* label;
    const char* key;
    AppletInfos question;
};
constexpr std::array kTexts{
    QuestionRow{"name",        "name",        GET_INFO_FRIENDLY_NAME},
    QuestionRow{"description", "description", GET_INFO_DESCRIPTION  },
    QuestionRow{"tags",        "tags",        GET_INFO_TAGS         },
    QuestionRow{"design id",   "designId",    GET_HAP_ID            },
};
constexpr std::array kCounts{
    QuestionRow{"ports",        "ports",       GET_NR_OF_PORTS},
    QuestionRow{"cameras",      "cameras",     GET_NR_OF_CAMS },
    QuestionRow{"DMA channels", "dmaChannels", GET_NR_OF_DMAS },
};

/// The answers, as a table and as an object.
class Report {
public:
    void add(const char* label, const char* key, const std::string& text) { add(label, key, text, text); }
    void add(const char* label, const char* key, const std::string& text, Json value) {
        mTable.add({label, text});
        mObject[key] = std::move(value);
    }
    void addNumber(const char* label, const char* key, int number) {
        add(label, key, fmt::format("{} (0x{:X})", number, number), number);
    }
    void print(bool isJson) const { isJson ? printJson(mObject) : fmt::print("{}", mTable.text()); }

private:
    Table mTable;
    Json mObject = Json::object();
};

void addApplet(Report& report, const host::AppletLibrary& applet) {
    report.add("library", "library", applet.path().string());
    for (const QuestionRow& row : kTexts) report.add(row.label, row.key, applet.infoText(row.question));
    const int version = applet.infoNumber(GET_VERSION);
    report.add("version", "version", fmt::format("{}.{}", version >> 16, version & 0xFFFF));
    report.addNumber("board type", "boardType", applet.infoNumber(GET_BOARD_TYPE));
    for (const QuestionRow& row : kCounts) {
        const int count = applet.infoNumber(row.question);
        report.add(row.label, row.key, fmt::format("{}", count), count);
    }
    const int iconSize = applet.iconSize();
    report.add("icon", "iconBytes", fmt::format("{} bytes", iconSize), iconSize);
}

void addBoard(Report& report, const host::AppletLibrary& applet, const host::Grabber& grabber) {
    report.addNumber("applet id", "appletId", grabber.appletId());
    report.add("design", "design", grabber.designName());
    const auto libraries = host::loadRuntimeLibraries(applet);
    for (const host::RuntimeLibrary& library : libraries) {
        report.add(library.fileName.c_str(), library.fileName.c_str(), library.path);
    }
    const bool isSimulated = host::isSoftwareBoard(libraries.front());
    report.add("board", "board", isSimulated ? "software board (simulated)" : "hardware",
               isSimulated ? "software" : "hardware");
}

class InfoCommand : public Command {
public:
    int run(Session& session) override {
        Report report;
        addApplet(report, session.applet());
        try {
            addBoard(report, session.applet(), session.grabber());
        } catch (const ToolError&) {
            // What the applet says of itself is shown even when no board opens.
            report.print(session.isJson());
            throw;
        }
        report.print(session.isJson());
        return kExitOk;
    }
};

}  // namespace

std::unique_ptr<Command> makeInfoCommand(CLI::App&) { return std::make_unique<InfoCommand>(); }

}  // namespace quillon::tool
