#include "simulation/board/BoardEnvironment.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <type_traits>
#include <utility>

#include "simulation/support/Numbers.h"
#include "simulation/support/OperationNames.h"

namespace simulation {

namespace {

/// What came of a text; nothing where it does not have the form that its variable wants.
using MaybeOutcome = std::optional<Outcome>;

/// A text in two, without the first \p mark; both halves are the text's own.
using Halves = std::pair<std::string_view, std::string_view>;
std::optional<Halves> halvesOf(std::string_view text, char mark) {
    const size_t at = text.find(mark);
    if (at == std::string_view::npos) return std::nullopt;
    return Halves{text.substr(0, at), text.substr(at + 1)};
}

template <class Owner>
Owner& partOf(Board& board) {
    if constexpr (std::is_same_v<Owner, Board>) {
        return board;
    } else {
        return board.disturbances();
    }
}

template <class Owner, class Number>
MaybeOutcome setFrom(std::string_view text, Board& board, Outcome (Owner::*setter)(Number)) {
    const auto number = parseNumber<Number>(text);
    return number ? MaybeOutcome((partOf<Owner>(board).*setter)(*number)) : std::nullopt;
}

template <class Owner, class First, class Second>
MaybeOutcome setFrom(std::string_view text, Board& board, Outcome (Owner::*setter)(First, Second)) {
    const auto halves = halvesOf(text, ':');
    const auto first = halves ? parseNumber<First>(halves->first) : std::nullopt;
    const auto second = halves ? parseNumber<Second>(halves->second) : std::nullopt;
    return first && second ? MaybeOutcome((partOf<Owner>(board).*setter)(*first, *second)) : std::nullopt;
}

/// The setter's numbers, with a colon between them where there are two.
template <auto setter>
MaybeOutcome applyNumbers(Board& board, int /*number*/, const std::string& text) {
    return setFrom(text, board, setter);
}

MaybeOutcome applyCamera(Board& board, int /*number*/, const std::string& text) { return board.setCameraFolder(text); }

MaybeOutcome applyScene(Board& board, int /*number*/, const std::string& text) {
    const auto sides = halvesOf(text, 'x');
    const auto width = sides ? parseNumber<uint32_t>(sides->first) : std::nullopt;
    const auto height = sides ? parseNumber<uint32_t>(sides->second) : std::nullopt;
    return width && height ? MaybeOutcome(board.setScene({*width, *height})) : std::nullopt;
}

MaybeOutcome applyMode(Board& board, int /*number*/, const std::string& text) {
    if (text == "realtime") return board.setMode(ClockMode::realTime);
    if (text == "fast") return board.setMode(ClockMode::fast);
    return std::nullopt;
}

MaybeOutcome applyCameraTrigger(Board& board, int /*number*/, const std::string& text) {
    constexpr std::array kNames{"auto", "free", "cc1", "cc2", "cc3", "cc4"};
    const auto* const name = std::find(kNames.begin(), kNames.end(), text);
    if (name == kNames.end()) return std::nullopt;
    board.setCameraTrigger(static_cast<CameraTrigger>(name - kNames.begin()));
    return Outcome{};
}

MaybeOutcome applyLink(Board& board, int /*number*/, const std::string& text) {
    if (text != "0" && text != "1") return std::nullopt;
    board.setLink(text == "1");
    return Outcome{};
}

MaybeOutcome applyGeometry(Board& board, int /*number*/, const std::string& text) { return board.setGeometry(text); }

MaybeOutcome applyDrop(Board& board, int /*number*/, const std::string& text) {
    const Halves halves = halvesOf(text, ':').value_or(Halves{text, "0"});
    const auto percent = parseNumber<double>(halves.first);
    const auto seed = parseNumber<uint32_t>(halves.second);
    return percent && seed ? MaybeOutcome(board.disturbances().setDrop(*percent, *seed)) : std::nullopt;
}

MaybeOutcome applyFault(Board& board, int /*number*/, const std::string& text) {
    std::string why;
    const auto faults = FaultPlan::parse(text, kOperationNames, why);
    if (!faults) return Outcome{kBadSetting, why};
    board.faults().clear();
    for (const Fault& fault : *faults) board.faults().add(fault);
    return Outcome{};
}

MaybeOutcome applyTrace(Board& board, int number, const std::string& text) {
    // Every board writes a file of its own.
    const bool isShared = number == 0 || text.empty() || text == "-";
    const std::string path = isShared ? text : text + "." + std::to_string(number);
    if (!board.trace().writeTo(path)) return Outcome{kBadSetting, "\"" + path + "\" cannot be written"};
    return Outcome{};
}

struct Variable {
    std::string_view name;
    std::string_view form;
    MaybeOutcome (*apply)(Board&, int boardNumber, const std::string& text);
};

constexpr std::array kVariables{
    Variable{"TAVO_SIM_CAMERA",           "",                              applyCamera                                   },
    Variable{"TAVO_SIM_SCENE",            "WIDTHxHEIGHT",                  applyScene                                    },
    Variable{"TAVO_SIM_GEOMETRY",         "",                              applyGeometry                                 },
    Variable{"TAVO_SIM_RATE",             "a number of frames/s",          applyNumbers<&Board::setRate>                 },
    Variable{"TAVO_SIM_CAMERA_TRIGGER",   "auto, free or cc1 to cc4",      applyCameraTrigger                            },
    Variable{"TAVO_SIM_READOUT_TIME",     "a number of microseconds",      applyNumbers<&Board::setReadoutTime>          },
    Variable{"TAVO_SIM_MODE",             "realtime or fast",              applyMode                                     },
    Variable{"TAVO_SIM_LINK",             "0 or 1",                        applyLink                                     },
    Variable{"TAVO_SIM_INPUTS",           "a number from 0 to 255",        applyNumbers<&Board::setInputs>               },
    Variable{"TAVO_SIM_INPUT_RATE",       "INPUT:HZ",                      applyNumbers<&Board::setInputRate>            },
    Variable{"TAVO_SIM_DROP",             "PERCENT or PERCENT:SEED",       applyDrop                                     },
    Variable{"TAVO_SIM_LINK_GAP",         "AFTER:LENGTH in milliseconds",  applyNumbers<&Disturbances::setLinkGap>       },
    Variable{"TAVO_SIM_DMA_GAP",          "AFTER:LENGTH in milliseconds",  applyNumbers<&Disturbances::setDmaGap>        },
    Variable{"TAVO_SIM_FIRST_TAG",        "a number from 0 to 2147483647", applyNumbers<&Disturbances::setFirstTag>      },
    Variable{"TAVO_SIM_FIRST_TIME_STAMP", "a number of nanoseconds",       applyNumbers<&Disturbances::setFirstTimeStamp>},
    Variable{"TAVO_SIM_REGISTER_DELAY",   "a number of microseconds",      applyNumbers<&Disturbances::setRegisterDelay> },
    Variable{"TAVO_SIM_FAULT",            "",                              applyFault                                    },
    Variable{"TAVO_SIM_TRACE",            "",                              applyTrace                                    },
};

/// \return the outcome with the name of the variable, where it is a refusal.
Outcome outcomeOf(const Variable& variable, const MaybeOutcome& applied, const std::string& text) {
    if (applied && applied->code == kOk) return {};
    const std::string name(variable.name);
    if (applied) return {applied->code, name + ": " + applied->text};
    return {kBadSetting, name + ": \"" + text + "\" is refused: " + std::string(variable.form) + " is wanted"};
}

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
        Outcome outcome = outcomeOf(variable, variable.apply(board, boardNumber, text), text);
        if (outcome.code != kOk) return outcome;
        mApplied[variable.name] = text;
    }
    return {};
}

}  // namespace simulation
