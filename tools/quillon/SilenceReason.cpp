#include "SilenceReason.h"

#include <fmt/format.h>

#include <array>
#include <vector>

#include "PictureWindow.h"
#include "ValueText.h"
#include "fabrix/parameter_ids.h"
#include "host/ParameterCatalogue.h"

namespace quillon::tool {

namespace {

/// Values of FG_GEN_ENABLE, FG_TRIGGERMODE and of the CC lines that carry ExSync.
constexpr int kCamera = 0;
constexpr int kGenerator = 1;
constexpr int kFreeRun = 0;
constexpr int kCcExSync = 0;
constexpr int kCcNotExSync = 6;
constexpr std::array kCcLines{FG_CCSEL0, FG_CCSEL1, FG_CCSEL2, FG_CCSEL3};

enum class Trigger { None, Grabber, Input, Software };

struct ModeRow {
    int mode;
    Trigger trigger;
    const char* source;  ///< what starts an exposure
};
constexpr std::array kModes{
    ModeRow{1, Trigger::Grabber,  "the board's own clock, FG_FRAMESPERSEC"                                },
    ModeRow{2, Trigger::Input,    "pulses on the trigger input"                                           },
    ModeRow{3, Trigger::Grabber,  "the other port's clock"                                                },
    ModeRow{4, Trigger::Software, "software triggers (--software-triggers, FG_SENDSOFTWARETRIGGER)"       },
    ModeRow{7, Trigger::Software, "queued software triggers (--software-triggers, FG_SENDSOFTWARETRIGGER)"},
};

const ModeRow* rowOf(int mode) {
    for (const ModeRow& row : kModes) {
        if (row.mode == mode) return &row;
    }
    return nullptr;
}

/// Names and values of parameters as a person reads them.
class State {
public:
    explicit State(const host::Grabber& grabber) : mGrabber(grabber), mCatalogue(grabber) {}

    /// \return for example "FG_EXSYNCON = FG_OFF (0)"; empty where the applet has no such parameter
    [[nodiscard]] std::string text(int id) const {
        for (const host::ParameterInfo& parameter : mCatalogue.parameters()) {
            host::ParameterValue value;
            if (parameter.id != id || host::readValue(mGrabber, parameter, value) < 0) continue;
            return fmt::format("{} = {}", parameter.name, formatValue(parameter, value));
        }
        return "";
    }

    [[nodiscard]] int value(int id, int otherwise) const { return readOr(mGrabber, id, otherwise); }

    [[nodiscard]] bool hasExSyncLine() const {
        bool hasLine = false;
        for (const int line : kCcLines) {
            const int source = value(line, kCcExSync);
            hasLine = hasLine || source == kCcExSync || source == kCcNotExSync;
        }
        return hasLine;
    }

private:
    const host::Grabber& mGrabber;
    host::ParameterCatalogue mCatalogue;
};

/// Settings with which no picture can come, whatever the camera does.
void addObstacles(const State& state, std::vector<std::string>& reasons) {
    const int selected = state.value(FG_IMG_SELECT, 0);
    const int period = state.value(FG_IMG_SELECT_PERIOD, 1);
    if (selected >= period && period > 0) {
        reasons.push_back(fmt::format(
            "FG_IMG_SELECT = {} chooses no frame out of FG_IMG_SELECT_PERIOD = {}, counted from 0", selected, period));
    }
    if (state.value(FG_GEN_ENABLE, kCamera) == kGenerator) {
        reasons.emplace_back(
            "FG_GEN_ENABLE = FG_GENERATOR: check that FG_GEN_START is FG_ON and that FG_GEN_WIDTH and FG_GEN_HEIGHT "
            "make a picture");
    } else if (state.value(FG_CAMSTATUS, 1) == 0) {
        reasons.emplace_back("FG_CAMSTATUS = 0: the camera link is closed, check the camera's power and cables");
    }
}

void addTrigger(const State& state, std::vector<std::string>& reasons) {
    const int mode = state.value(FG_TRIGGERMODE, kFreeRun);
    const ModeRow* row = rowOf(mode);
    if (row == nullptr) {
        reasons.push_back(mode == kFreeRun
                              ? "it waited for a camera that runs by itself: check that the camera sends frames and "
                                "is in no triggered mode, or wait longer with --timeout"
                              : fmt::format("{} triggers nothing", state.text(FG_TRIGGERMODE)));
        return;
    }
    if (state.value(FG_EXSYNCON, 1) == 0) {
        reasons.emplace_back("FG_EXSYNCON = FG_OFF: no trigger reaches the camera, set FG_EXSYNCON=FG_ON");
    }
    if (!state.hasExSyncLine()) {
        reasons.emplace_back(
            "no CC line carries ExSync to the camera, set FG_CCSEL0=CC_EXSYNC (or the line that it uses)");
    }
    std::string text = fmt::format("{}: it waited for {}", state.text(FG_TRIGGERMODE), row->source);
    if (row->trigger == Trigger::Input) {
        text += fmt::format(" ({}, {}; FG_DIGIO_INPUT shows the levels)", state.text(FG_TRIGGERINSRC),
                            state.text(FG_TRIGGERINPOLARITY));
    }
    reasons.push_back(text);
    reasons.push_back(
        fmt::format("ExSync goes by {}, {}, {}, {}; the camera must be set to take its trigger from there",
                    state.text(FG_CCSEL0), state.text(FG_CCSEL1), state.text(FG_CCSEL2), state.text(FG_CCSEL3)));
}

}  // namespace

std::string explainSilence(const host::Grabber& grabber) {
    const State state(grabber);
    std::vector<std::string> reasons;
    addObstacles(state, reasons);
    if (state.value(FG_GEN_ENABLE, kCamera) != kGenerator) {
        addTrigger(state, reasons);
        if (state.value(FG_CAMSTATUS, 0) != 0) reasons.emplace_back("the camera link is up (FG_CAMSTATUS = 1)");
    }
    return fmt::format("{}", fmt::join(reasons, "\n  "));
}

}  // namespace quillon::tool
