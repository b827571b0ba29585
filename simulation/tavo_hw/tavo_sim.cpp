#include "simulation/tavo_hw/tavo_sim.h"

#include <algorithm>
#include <array>
#include <string>

#include "simulation/support/OperationNames.h"
#include "simulation/tavo_hw/guarded.h"

using namespace simulation;

static_assert(TAVO_SIM_OK == kOk && TAVO_SIM_NO_DEVICE == kNoDevice && TAVO_SIM_BAD_ARGUMENT == kBadArgument);
static_assert(TAVO_SIM_NO_REGISTER == kNoRegister && TAVO_SIM_READ_ONLY == kReadOnly);
static_assert(TAVO_SIM_NOT_CONFIGURED == kNotConfigured && TAVO_SIM_BAD_DESIGN == kBadDesign);
static_assert(TAVO_SIM_BAD_SETTING == kBadSetting && TAVO_SIM_TIME_OUT == kTimeOut && TAVO_SIM_STOPPED == kStopped);
static_assert(TAVO_SIM_BUSY == kBusy && TAVO_SIM_NOT_SUPPORTED == kNotSupported);
static_assert(TAVO_SIM_NO_PICTURE == kNoPicture && TAVO_SIM_OUT_OF_MEMORY == kOutOfMemory);
static_assert(TAVO_SIM_INTERNAL == kInternal);
static_assert(TAVO_SIM_CC_CONSTANT == CcLine::kSignals);
static_assert(TAVO_SIM_TRIGGER_AUTO == static_cast<int>(CameraTrigger::automatic));
static_assert(TAVO_SIM_TRIGGER_FREE == static_cast<int>(CameraTrigger::free));
static_assert(TAVO_SIM_TRIGGER_CC1 == static_cast<int>(CameraTrigger::cc1));
static_assert(TAVO_SIM_TRIGGER_CC4 == static_cast<int>(CameraTrigger::cc4));

namespace {

int badArgument(const char* text) { return report({kBadArgument, text}); }

template <class Change>
int disturb(const FgDevice* device, Change&& change) {
    return onBoard<int>(device, [&](BenchBoard& bench) { return report(change(bench.board.disturbances())); });
}

/// A time before 0 lies behind a new start of the count.
uint64_t asNumber(BoardTime time) { return static_cast<uint64_t>(std::max(time, BoardTime(0)).count()); }

tavo_sim_signal signalOf(const SignalProbe& probe) {
    return {probe.level ? 1 : 0, probe.rising, probe.falling, asNumber(probe.lastRising), asNumber(probe.lastFalling)};
}

}  // namespace

extern "C" {

FgDevice* tavo_sim_open(int number) {
    try {
        return number < 0 ? nullptr : boards().open(number);
    } catch (const std::exception&) {
        return nullptr;
    }
}

int tavo_sim_close(FgDevice* device) {
    return onBoard<int>(device, [&](BenchBoard&) {
        boards().close(device);
        return kOk;
    });
}

int tavo_sim_camera_folder(FgDevice* device, const char* folder) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (folder == nullptr) return badArgument("the folder is null");
        return report(bench.board.setCameraFolder(folder));
    });
}

int tavo_sim_camera_scene(FgDevice* device, int width, int height) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (width < 0 || height < 0) return badArgument("a side of the scene is negative");
        return report(bench.board.setScene({static_cast<uint32_t>(width), static_cast<uint32_t>(height)}));
    });
}

int tavo_sim_set_geometry(FgDevice* device, int geometry) {
    return onBoard<int>(device, [&](BenchBoard& bench) { return report(bench.board.setGeometry(geometry)); });
}

int tavo_sim_camera_rate(FgDevice* device, double framesPerSecond) {
    return onBoard<int>(device, [&](BenchBoard& bench) { return report(bench.board.setRate(framesPerSecond)); });
}

int tavo_sim_camera_trigger(FgDevice* device, int trigger) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (trigger < TAVO_SIM_TRIGGER_AUTO || trigger > TAVO_SIM_TRIGGER_CC4) {
            return badArgument("there is no such trigger of the camera");
        }
        bench.board.setCameraTrigger(static_cast<CameraTrigger>(trigger));
        return kOk;
    });
}

int tavo_sim_readout_time(FgDevice* device, double microseconds) {
    return onBoard<int>(device, [&](BenchBoard& bench) { return report(bench.board.setReadoutTime(microseconds)); });
}

int tavo_sim_camera_link(FgDevice* device, int connected) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        bench.board.setLink(connected != 0);
        return kOk;
    });
}

int tavo_sim_set_inputs(FgDevice* device, int levels) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (levels < 0) return badArgument("the levels of the inputs are negative");
        return report(bench.board.setInputs(static_cast<uint32_t>(levels)));
    });
}

int tavo_sim_pulse(FgDevice* device, int input) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (input < 0) return badArgument("the input is negative");
        return report(bench.board.pulse(static_cast<unsigned>(input)));
    });
}

int tavo_sim_input_rate(FgDevice* device, int input, double pulsesPerSecond) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (input < 0) return badArgument("the input is negative");
        return report(bench.board.setInputRate(static_cast<unsigned>(input), pulsesPerSecond));
    });
}

int tavo_sim_trigger(FgDevice* device, tavo_sim_trigger_state* state) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (state == nullptr) return badArgument("the state is null");
        TriggerReport now;
        const int code = bench.board.triggerReport(now);
        if (code != kOk) return report({code, "the board has not been configured"});
        *state = {asNumber(now.now), asNumber(now.lastTrigger), now.pulses,           now.ignored,
                  now.queued,        now.isBusy ? 1 : 0,        signalOf(now.exSync), signalOf(now.flash)};
        return kOk;
    });
}

int tavo_sim_outputs(FgDevice* device) {
    return onBoard<int>(device, [](BenchBoard& bench) { return bench.board.outputs(); });
}

int tavo_sim_cc_line(FgDevice* device, int line, tavo_sim_cc_state* state) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (line < 0 || line >= static_cast<int>(CcLine::kLines)) return badArgument("there are the lines 0 to 3");
        if (state == nullptr) return badArgument("the state is null");
        CcLine driven;
        const int code = bench.board.ccLine(static_cast<unsigned>(line), driven);
        if (code != kOk) return report({code, "the board has not been configured"});
        *state = {static_cast<int>(driven.source), driven.isInverted ? 1 : 0,
                  driven.isConstant() ? static_cast<int>(driven.level()) : -1};
        return kOk;
    });
}

int tavo_sim_mode(FgDevice* device, int clock) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (clock != TAVO_SIM_REALTIME && clock != TAVO_SIM_FAST) return badArgument("there is no such clock");
        return report(bench.board.setMode(clock == TAVO_SIM_FAST ? ClockMode::fast : ClockMode::realTime));
    });
}

int tavo_sim_drop_frames(FgDevice* device, double percent, uint32_t seed) {
    return disturb(device, [&](Disturbances& now) { return now.setDrop(percent, seed); });
}

int tavo_sim_link_gap(FgDevice* device, double afterMs, double lengthMs) {
    return disturb(device, [&](Disturbances& now) { return now.setLinkGap(afterMs, lengthMs); });
}

int tavo_sim_dma_gap(FgDevice* device, double afterMs, double lengthMs) {
    return disturb(device, [&](Disturbances& now) { return now.setDmaGap(afterMs, lengthMs); });
}

int tavo_sim_hold_dma(FgDevice* device, int held) {
    return disturb(device, [&](Disturbances& now) {
        now.holdDma(held != 0);
        return Outcome{};
    });
}

int tavo_sim_first_tag(FgDevice* device, int tag) {
    return disturb(device, [&](Disturbances& now) { return now.setFirstTag(static_cast<uint32_t>(tag)); });
}

int tavo_sim_first_time_stamp(FgDevice* device, uint64_t nanoseconds) {
    return disturb(device, [&](Disturbances& now) { return now.setFirstTimeStamp(nanoseconds); });
}

int tavo_sim_register_delay(FgDevice* device, double microseconds) {
    return disturb(device, [&](Disturbances& now) { return now.setRegisterDelay(microseconds); });
}

int tavo_sim_get_losses(FgDevice* device, tavo_sim_losses* losses) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (losses == nullptr) return badArgument("the losses are null");
        const TransferStatistics counts = bench.board.statistics();
        *losses = {counts.dropped, counts.held};
        return kOk;
    });
}

int tavo_sim_fail(FgDevice* device, const char* operation, int call, int code) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        const auto* const known = operation == nullptr
                                      ? kOperationNames.end()
                                      : std::find(kOperationNames.begin(), kOperationNames.end(), operation);
        if (known == kOperationNames.end() || !known->starts_with("Tavo")) {
            return badArgument("there is no such hardware operation");
        }
        if (call < 1 || code >= 0) return badArgument("the call counts from 1, and the code is negative");
        bench.board.faults().add({operation, call, code});
        return kOk;
    });
}

int tavo_sim_clear_faults(FgDevice* device) {
    return onBoard<int>(device, [](BenchBoard& bench) {
        bench.board.faults().clear();
        return kOk;
    });
}

int tavo_sim_trace(FgDevice* device, int on) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        bench.board.trace().keep(on != 0);
        return kOk;
    });
}

size_t tavo_sim_trace_get(FgDevice* device, char* buffer, size_t size) {
    return onBoard<size_t>(device, [&](BenchBoard& bench) {
        std::string text;
        for (const std::string& line : bench.board.trace().lines()) text += line + '\n';
        if (buffer != nullptr && size > 0) {
            const size_t length = std::min(text.size(), size - 1);
            std::copy_n(text.begin(), length, buffer);
            buffer[length] = '\0';
        }
        return text.size() + 1;
    });
}

int tavo_sim_trace_file(FgDevice* device, const char* path) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        const std::string file = path == nullptr ? "" : path;
        if (bench.board.trace().writeTo(file)) return kOk;
        return report({kBadSetting, file + ": the trace cannot be written there"});
    });
}

int tavo_sim_get_statistics(FgDevice* device, tavo_sim_statistics* statistics) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        if (statistics == nullptr) return badArgument("the statistics are null");
        const TransferStatistics counts = bench.board.statistics();
        *statistics = {counts.delivered, counts.lost, counts.skipped, counts.missed};
        return kOk;
    });
}

int tavo_sim_open_buffers(FgDevice* device) {
    return onBoard<int>(device, [](BenchBoard& bench) { return static_cast<int>(bench.board.openBufferSets()); });
}

const char* tavo_sim_last_error(void) { return lastError(); }
}
