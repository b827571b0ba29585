#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "AppletFiles.h"
#include "Command.h"
#include "CurveChart.h"
#include "PictureFiles.h"
#include "Session.h"
#include "StateOptions.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "host/KneeCurve.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

constexpr size_t kPrintedSteps = 8;

KneeChart readChart(const host::Grabber& grabber) {
    KneeChart chart;
    int code = host::readKneeCurve(grabber, chart.base);
    if (code >= 0) code = host::readKneeProcessing(grabber, chart.processing);
    if (code < 0) {
        throw ToolError(kExitRefused, fmt::format("the knee curve cannot be read: {}", host::describeResultCode(code)));
    }
    chart.result = host::processCurve(chart.base, chart.processing);
    return chart;
}

void printChart(const KneeChart& chart) {
    const host::KneeProcessing& processing = chart.processing;
    fmt::print("offset {}, gain {}, gamma {}, {}\n", processing.offset, processing.gain, processing.gamma,
               processing.isInverted ? "inverted" : "not inverted");
    Table table;
    table.add({"INPUT", "BASE CURVE", "IN EFFECT"});
    const size_t last = chart.base.size() - 1;
    for (size_t step = 0; step <= kPrintedSteps; ++step) {
        const size_t point = last * step / kPrintedSteps;
        table.add({fmt::format("{:.3f}", static_cast<double>(point) / static_cast<double>(last)),
                   fmt::format("{:.6f}", chart.base[point]), fmt::format("{:.6f}", chart.result[point])});
    }
    fmt::print("{}", table.text());
}

void printChartJson(const KneeChart& chart) {
    const host::KneeProcessing& processing = chart.processing;
    printJson({
        {"offset",    processing.offset    },
        {"gain",      processing.gain      },
        {"gamma",     processing.gamma     },
        {"inverted",  processing.isInverted},
        {"base",      chart.base           },
        {"effective", chart.result         }
    });
}

/// One of show, save and load: each has the state options of its own.
struct Action {
    explicit Action(CLI::App& command) : options(command), state(command) {}

    void addFile(const char* help) { options.add_option("FILE", file, help); }
    void addOutput() {
        options
            .add_option("--output", output, "draw the curve into a picture, .png or .pgm: input across, output upwards")
            ->type_name("FILE");
    }
    void requireFile() const {
        if (!file.empty()) return;
        throw ToolError(kExitUsage, "name the LUT file before all --set, for example curve.lut");
    }

    CLI::App& options;
    StateOptions state;
    std::string file;
    std::string output;
};

CLI::App& addAction(CLI::App& lut, const char* name, const char* summary, const char* example) {
    CLI::App* action = lut.add_subcommand(name, summary);
    action->fallthrough();
    action->footer(fmt::format("Example:\n  {}", example));
    return *action;
}

class LutCommand : public Command {
public:
    explicit LutCommand(CLI::App& options)
        : mShow(addAction(options, "show", "Show the knee curve: the base curve, and what takes effect",
                          "quillon lut show --set FG_KNEE_LUT_GAMMA=2 --output curve.png")),
          mSave(addAction(options, "save", "Save the base curve to a LUT file", "quillon lut save curve.lut")),
          mLoad(addAction(options, "load", "Load a LUT file and show the knee curve that it makes",
                          "quillon lut load curve.lut --output curve.png")) {
        options.require_subcommand(1);
        mShow.addOutput();
        mSave.addFile("LUT file (.lut) to make or to replace");
        mLoad.addFile("LUT file (.lut)");
        mLoad.addOutput();
    }

    int run(Session& session) override {
        if (mSave.options.parsed()) return save(session);
        return mLoad.options.parsed() ? load(session) : show(session, mShow);
    }

private:
    static host::Grabber& open(Session& session, const Action& action) {
        action.state.check();
        host::Grabber& grabber = session.grabber();
        action.state.apply(grabber);
        return grabber;
    }

    static int show(Session& session, const Action& action);
    int save(Session& session) const;
    int load(Session& session) const;

    Action mShow;
    Action mSave;
    Action mLoad;
};

int LutCommand::show(Session& session, const Action& action) {
    std::optional<PictureFiles> picture;
    if (!action.output.empty()) {
        picture.emplace(action.output);
        picture->prepareFolder();
    }
    host::Grabber& grabber = open(session, action);
    if (!action.file.empty()) loadLut(grabber, action.file);
    const KneeChart chart = readChart(grabber);
    session.isJson() ? printChartJson(chart) : printChart(chart);
    if (picture) {
        const std::vector<std::byte> pixels = drawChart(chart);
        picture->write(1, {kChartWidth, kChartHeight, pixels});
        if (!session.isJson()) fmt::print("drawn to {}\n", picture->path(1).string());
    }
    const bool isBlack = std::all_of(chart.base.begin(), chart.base.end(), [](double value) { return value == 0; });
    if (isBlack && !action.file.empty()) {
        fmt::print(stderr,
                   "quillon: every point is 0: either {} is black, or it has no section [gray] with lines such "
                   "as '0,0.25;'\n",
                   action.file);
    }
    return kExitOk;
}

int LutCommand::save(Session& session) const {
    mSave.requireFile();
    checkName(mSave.file, kLutFile);
    host::Grabber& grabber = open(session, mSave);
    saveLut(grabber, mSave.file);
    if (session.isJson()) {
        printJson({
            {"file", mSave.file}
        });
    } else {
        fmt::print("saved {}\n", mSave.file);
    }
    return kExitOk;
}

int LutCommand::load(Session& session) const {
    mLoad.requireFile();
    checkReadable(mLoad.file, kLutFile);
    const int exitCode = show(session, mLoad);
    if (session.isJson()) return exitCode;
    fmt::print(
        "To keep it: quillon set --config FILE.mcf FG_KNEE_LUT_FILE={} "
        "FG_KNEE_LUT_SAVE_LOAD_FILE=FG_LOAD_LUT_FROM_FILE\n",
        mLoad.file);
    return exitCode;
}

}  // namespace

std::unique_ptr<Command> makeLutCommand(CLI::App& options) { return std::make_unique<LutCommand>(options); }

}  // namespace quillon::tool
