#include "simulation/board/BoardEnvironment.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "simulation/support/Numbers.h"
#include "simulation/support/OperationNames.h"

namespace simulation {

namespace {

Outcome wanted(std::string_view form, const std::string& text) {
    return {kBadSetting, "\"" + text + "\" is refused: " + std::string(form) + " is wanted"};
}

Outcome applyCamera(Board& board, int /*number*/, const std::string& text) { return board.setCameraFolder(text); }

Outcome applyScene(Board& board, int /*number*/, const std::string& text) {
    const size_t cross = text.find('x');
    const auto width = parseNumber<uint32_t>(std::string_view(text).substr(0, cross));
    const auto height =
        cross == std::string::npos ? std::nullopt : parseNumber<uint32_t>(std::string_view(text).substr(cross + 1));
    if (!width || !height) return wanted("WIDTHxHEIGHT", text);
    return board.setScene({*width, *height});
}

Outcome applyRate(Board& board, int /*number*/, const std::string& text) {
    const auto rateHz = parseNumber<double>(text);
    return rateHz ? board.setRate(*rateHz) : wanted("a number of frames/s", text);
}

Outcome applyMode(Board& board, int /*number*/, const std::string& text) {
    if (text == "realtime") return board.setMode(ClockMode::realTime);
    if (text == "fast") return board.setMode(ClockMode::fast);
    return wanted("realtime or fast", text);
}

Outcome applyCameraTrigger(Board& board, int /*number*/, const std::string& text) {
    constexpr std::array kNames{"auto", "free", "cc1", "cc2", "cc3", "cc4"};
    const auto* const name = std::find(kNames.begin(), kNames.end(), text);
    if (name == kNames.end()) return wanted("auto, free or cc1 to cc4", text);
    board.setCameraTrigger(static_cast<CameraTrigger>(name - kNames.begin()));
    return {};
}

Outcome applyReadoutTime(Board& board, int /*number*/, const std::string& text) {
    const auto us = parseNumber<double>(text);
    return us ? board.setReadoutTime(*us) : wanted("a number of microseconds", text);
}

Outcome applyInputRate(Board& board, int /*number*/, const std::string& text) {
    const size_t colon = text.find(':');
    const auto input = parseNumber<unsigned>(std::string_view(text).substr(0, colon));
    const auto rateHz =
        colon == std::string::npos ? std::nullopt : parseNumber<double>(std::string_view(text).substr(colon + 1));
    if (!input || !rateHz) return wanted("INPUT:HZ", text);
    return board.setInputRate(*input, *rateHz);
}

Outcome applyLink(Board& board, int /*number*/, const std::string& text) {
    if (text != "0" && text != "1") return wanted("0 or 1", text);
    board.setLink(text == "1");
    return {};
}

Outcome applyGeometry(Board& board, int /*number*/, const std::string& text) { return board.setGeometry(text); }

Outcome applyInputs(Board& board, int /*number*/, const std::string& text) {
    const auto levels = parseNumber<uint32_t>(text);
    return levels ? board.setInputs(*levels) : wanted("a number from 0 to 255", text);
}

Outcome applyFault(Board& board, int /*number*/, const std::string& text) {
    std::string why;
    const auto faults = FaultPlan::parse(text, kOperationNames, why);
    if (!faults) return {kBadSetting, why};
    board.faults().clear();
    for (const Fault& fault : *faults) board.faults().add(fault);
    return {};
}

Outcome applyTrace(Board& board, int number, const std::string& text) {
    // Every board writes a file of its own.
    const bool isShared = number == 0 || text.empty() || text == "-";
    const std::string path = isShared ? text : text + "." + std::to_string(number);
    if (!board.trace().writeTo(path)) return {kBadSetting, "\"" + path + "\" cannot be written"};
    return {};
}

struct Variable {
    std::string_view name;
    Outcome (*apply)(Board&, int boardNumber, const std::string& text);
};

constexpr std::array kVariables{
    Variable{"TAVO_SIM_CAMERA",         applyCamera       },
    Variable{"TAVO_SIM_SCENE",          applyScene        },
    Variable{"TAVO_SIM_GEOMETRY",       applyGeometry     },
    Variable{"TAVO_SIM_RATE",           applyRate         },
    Variable{"TAVO_SIM_CAMERA_TRIGGER", applyCameraTrigger},
    Variable{"TAVO_SIM_READOUT_TIME",   applyReadoutTime  },
    Variable{"TAVO_SIM_MODE",           applyMode         },
    Variable{"TAVO_SIM_LINK",           applyLink         },
    Variable{"TAVO_SIM_INPUTS",         applyInputs       },
    Variable{"TAVO_SIM_INPUT_RATE",     applyInputRate    },
    Variable{"TAVO_SIM_FAULT",          applyFault        },
    Variable{"TAVO_SIM_TRACE",          applyTrace        },
};

}  // namespace

Outcome BoardEnvironment::apply(Board& board, int boardNumber) {
    const std::lock_guard lock(mMutex);
    if (std::getenv("TAVO_SIM_CAMERA") != nullptr && std::getenv("TAVO_SIM_SCENE") != nullptr) {
        return {kBadSetting, "TAVO_SIM_CAMERA and TAVO_SIM_SCENE are both set: the camera looks at one of them"};
    }
    for (const Variable& variable : kVariables) {
        const char* const text = std::getenv(variable.name.data());
        if (text == nullptr) continue;
        const auto applied = mApplied.find(variable.name);
        if (applied != mApplied.end() && applied->second == text) continue;
        Outcome outcome = variable.apply(board, boardNumber, text);
        if (outcome.code != kOk) {
            outcome.text = std::string(variable.name) + ": " + outcome.text;
            return outcome;
        }
        mApplied[variable.name] = text;
    }
    return {};
}

}  // namespace simulation
