#include "StandardApplets/grabber_basis/PSFx4/PSGenerator.h"

#include <cmath>
#include <cstdint>

#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr double kClockMHz = 125.0;
/// Below half an active cycle a pattern rounds to none: frequency times accuracy is at least this.
constexpr double kHalfCycleMHz = 62.5;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_GEN_ENABLE, TYPE_ENUM, "FG_GEN_ENABLE", "Image source", nullptr, "Use internal frame generator or CameraLink input."},
    ParameterRow{FG_GEN_START, TYPE_ENUM, "FG_GEN_START", "Image start", nullptr, nullptr},
    ParameterRow{FG_GEN_PASSIVE, TYPE_INT, "FG_GEN_PASSIVE", "Passive", nullptr, nullptr},
    ParameterRow{FG_GEN_ACTIVE, TYPE_INT, "FG_GEN_ACTIVE", "Active", nullptr, nullptr},
    ParameterRow{FG_GEN_LINE_WIDTH, TYPE_INT, "FG_GEN_LINE_WIDTH", "Line width", "[pixel]", nullptr},
    ParameterRow{FG_GEN_TAP1, TYPE_ENUM, "FG_GEN_TAP1", "Tap 1", nullptr, nullptr},
    ParameterRow{FG_GEN_TAP2, TYPE_ENUM, "FG_GEN_TAP2", "Tap 2", nullptr, nullptr},
    ParameterRow{FG_GEN_TAP3, TYPE_ENUM, "FG_GEN_TAP3", "Tap 3", nullptr, nullptr},
    ParameterRow{FG_GEN_TAP4, TYPE_ENUM, "FG_GEN_TAP4", "Tap 4", nullptr, nullptr},
    ParameterRow{FG_GEN_WIDTH, TYPE_INT, "FG_GEN_WIDTH", "Width", "[pixel]", nullptr},
    ParameterRow{FG_GEN_HEIGHT, TYPE_INT, "FG_GEN_HEIGHT", "Height", "[line]", nullptr},
    ParameterRow{FG_GEN_LINE_GAP, TYPE_INT, "FG_GEN_LINE_GAP", "Line Gap", "[pixel]", nullptr},
    ParameterRow{FG_GEN_FREQ, TYPE_DOUBLE, "FG_GEN_FREQ", "Frequency", "[Mhz]", "Frequency of frame generator."},
    ParameterRow{FG_GEN_ACCURACY, TYPE_INT, "FG_GEN_ACCURACY", "Accuracy", nullptr, nullptr},
    ParameterRow{FG_GEN_ROLL, TYPE_INT, "FG_GEN_ROLL", "Roll", nullptr, "Static or changing frames."},
};
constexpr std::array kFlags{
    FlagRow{FG_GEN_ENABLE, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_START, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_PASSIVE, kReadOnly, 1, 1, 1},
    FlagRow{FG_GEN_ACTIVE, kReadOnly, 1, 1, 1},
    FlagRow{FG_GEN_LINE_WIDTH, kReadOnly, 1, 1, 1},
    FlagRow{FG_GEN_TAP1, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_TAP2, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_TAP3, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_TAP4, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_WIDTH, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_HEIGHT, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_LINE_GAP, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_FREQ, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_ACCURACY, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_GEN_ROLL, kReadWriteAlways, 1, 1, 1},
};
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlags) && kParameters.size() == kFlags.size());

constexpr std::array kGroup{
    FG_GEN_ENABLE, FG_GEN_START, FG_GEN_WIDTH, FG_GEN_HEIGHT, FG_GEN_LINE_GAP, FG_GEN_FREQ, FG_GEN_ACCURACY,
    FG_GEN_TAP1, FG_GEN_TAP2, FG_GEN_TAP3, FG_GEN_TAP4, FG_GEN_ROLL, FG_GEN_ACTIVE, FG_GEN_PASSIVE,
    FG_GEN_LINE_WIDTH,
};
// clang-format on

constexpr std::array kSourceEntries{
    EnumField{"Camport",   0, "FG_CAMPORT"  },
    EnumField{"Generator", 1, "FG_GENERATOR"}
};
constexpr std::array kSwitchEntries{
    EnumField{"On",  1, "FG_ON" },
    EnumField{"Off", 0, "FG_OFF"}
};

/// An enumeration and its default.
struct ChoiceRow {
    int id;
    std::span<const EnumField> entries;
    int defaultValue;
};
constexpr std::array kChoices{
    ChoiceRow{FG_GEN_ENABLE, kSourceEntries, 0},
    ChoiceRow{FG_GEN_START,  kSwitchEntries, 1},
    ChoiceRow{FG_GEN_TAP1,   kSwitchEntries, 1},
    ChoiceRow{FG_GEN_TAP2,   kSwitchEntries, 1},
    ChoiceRow{FG_GEN_TAP3,   kSwitchEntries, 1},
    ChoiceRow{FG_GEN_TAP4,   kSwitchEntries, 1},
};

/// An integer from 0 in steps of 1.
struct CountRow {
    int id;
    int largest;
    int defaultValue;
    bool isDefaultWritten;  ///< false: what others decide has a default for display only
};
constexpr std::array kCounts{
    CountRow{FG_GEN_PASSIVE,    65535, 21,   false},
    CountRow{FG_GEN_ACTIVE,     65535, 4,    false},
    CountRow{FG_GEN_LINE_WIDTH, 65535, 1756, false},
    CountRow{FG_GEN_WIDTH,      65535, 1024, true },
    CountRow{FG_GEN_HEIGHT,     65535, 1024, true },
    CountRow{FG_GEN_LINE_GAP,   65535, 4,    true },
    CountRow{FG_GEN_ROLL,       255,   0,    true },
};

constexpr bool isTap(int id) { return id >= FG_GEN_TAP1 && id <= FG_GEN_TAP4; }

constexpr unsigned tapShift(int id) { return static_cast<unsigned>(id - FG_GEN_TAP1); }

/// \return the active cycles of a pattern, rounded to the nearest number; 0 when it would be none, more than the
///         pattern has, or no number at all
unsigned activeCycles(double freq, unsigned accuracy) {
    const double rounded = freq * accuracy / kClockMHz + 0.5;
    return rounded >= 1.0 && rounded < accuracy + 1.0 ? static_cast<unsigned>(rounded) : 0;
}

/// \return the shortest pattern for a frequency. A frequency in use never asks for more than 65536, which is 0 here
///         as in any 16-bit count.
uint16_t shortestPattern(double freq) {
    return static_cast<uint16_t>(static_cast<unsigned>(std::ceil(kHalfCycleMHz / freq)));
}

}  // namespace

const std::array<PSGenerator::Plain, 9> PSGenerator::kPlain{
    {
     {FG_GEN_ENABLE, &PSGenerator::mGenEnable, true},
     {FG_GEN_START, &PSGenerator::mGenStart, true},
     {FG_GEN_PASSIVE, &PSGenerator::mGenPassive, false},
     {FG_GEN_ACTIVE, &PSGenerator::mGenActive, false},
     {FG_GEN_LINE_WIDTH, &PSGenerator::mGenLineWidth, false},
     {FG_GEN_WIDTH, &PSGenerator::mGenWidth, true},
     {FG_GEN_HEIGHT, &PSGenerator::mGenHeight, true},
     {FG_GEN_LINE_GAP, &PSGenerator::mGenLineGap, true},
     {FG_GEN_ROLL, &PSGenerator::mGenRoll, true},
     }
};

PSGenerator::PSGenerator(Fg_StdMaster* FG_base) : RSGenerator(FG_base) {
    initRegisters();
    createParameters(*this, kParameters);
}

bool PSGenerator::calcRegisterSettings(double freq, unsigned short accuracy) {
    const unsigned active = activeCycles(freq, accuracy);
    if (active == 0 || active > maxActive() || accuracy - active > maxPassive()) return false;
    mGenActive = active;
    mGenPassive = accuracy - active;
    mGenAccuracy = accuracy;
    mGenFreq = freq;
    return true;
}

int PSGenerator::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    for (const Plain& plain : kPlain) {
        if (plain.id != id) continue;
        putValue(val, this->*plain.cache);
        return FG_OK;
    }
    if (isTap(id)) {
        putValue(val, mGenMask >> tapShift(id) & 1u);
    } else if (id == FG_GEN_FREQ) {
        putValue(val, mGenActive * kClockMHz / mGenAccuracy);
    } else if (id == FG_GEN_ACCURACY) {
        putValue(val, unsigned{mGenAccuracy});
    } else {
        return FG_INVALID_ARGUMENT;
    }
    return FG_OK;
}

int PSGenerator::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const int result = store(id, val);
    if (result == FG_GENERATOR_NOT_REALISABLE) return result;
    // Frequency and accuracy bound each other.
    setLimits(port, false);
    setFlags(port);
    return result;
}

int PSGenerator::store(int id, const void* val) {
    for (const Plain& plain : kPlain) {
        if (plain.id != id || !plain.isWritable) continue;
        this->*plain.cache = takeValue<unsigned>(val);
        mGenLineWidth = mGenWidth + mGenLineGap;
        return FG_OK;
    }
    if (isTap(id)) {
        const unsigned bit = 1u << tapShift(id);
        mGenMask = takeValue<unsigned>(val) != 0 ? mGenMask | bit : mGenMask & ~bit;
        return FG_OK;
    }
    bool isRealisable = true;
    if (id == FG_GEN_FREQ) {
        isRealisable = calcRegisterSettings(takeValue<double>(val), mGenAccuracy);
    } else if (id == FG_GEN_ACCURACY) {
        isRealisable = calcRegisterSettings(mGenFreq, static_cast<uint16_t>(takeValue<unsigned>(val)));
    } else {
        return FG_INVALID_ARGUMENT;
    }
    return isRealisable ? FG_OK : FG_GENERATOR_NOT_REALISABLE;
}

void PSGenerator::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSGenerator::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSGenerator::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    for (const ChoiceRow& row : kChoices) {
        header->setLimits(row.id, p, row.entries.data(), static_cast<int>(row.entries.size()), row.defaultValue,
                          updateDefault);
    }
    for (const CountRow& row : kCounts) {
        header->setLimits(row.id, p, 0, row.largest, 1, row.defaultValue, row.isDefaultWritten && updateDefault);
    }
    header->setLimits(FG_GEN_FREQ, p, std::ceil(kHalfCycleMHz / mGenAccuracy), kClockMHz, 1.0, 40.0, updateDefault);
    header->setLimits(FG_GEN_ACCURACY, p, shortestPattern(mGenFreq), static_cast<int>(maxActive()), 1, 25,
                      updateDefault);
}

void PSGenerator::setRegisterInfoTree(unsigned int port) { publishGroup(*header, port, nullptr, "Generator", kGroup); }

const char* PSGenerator::getDocModuleURL(int /*id*/) { return "feature_blocks/PSGenerator/FB_Generator.html"; }
