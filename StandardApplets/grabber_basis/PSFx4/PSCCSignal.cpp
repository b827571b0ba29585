#include "StandardApplets/grabber_basis/PSFx4/PSCCSignal.h"

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

using LineSources = std::array<CCsel, kCcLines>;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_CCSEL0, TYPE_ENUM, "FG_CCSEL0", "CC1", nullptr, "Assign a particular signal to CameraLink's CC1 line."},
    ParameterRow{FG_CCSEL1, TYPE_ENUM, "FG_CCSEL1", "CC2", nullptr, "Assign a particular signal to CameraLink's CC2 line."},
    ParameterRow{FG_CCSEL2, TYPE_ENUM, "FG_CCSEL2", "CC3", nullptr, "Assign a particular signal to CameraLink's CC3 line."},
    ParameterRow{FG_CCSEL3, TYPE_ENUM, "FG_CCSEL3", "CC4", nullptr, "Assign a particular signal to CameraLink's CC4 line."},
    ParameterRow{FG_DIGIO_OUTPUT, TYPE_INT, "FG_DIGIO_OUTPUT", "Digital Output", nullptr, "Select a value to be mapped to the digital outputs at the trigger board."},
    ParameterRow{FG_DIGIO_INPUT, TYPE_INT, "FG_DIGIO_INPUT", "Digital Input", nullptr, "Information about the digital input signals at the trigger board. "},
    ParameterRow{FG_CCSEL, TYPE_OTHER, "FG_CCSEL", "CC", nullptr, "Assign a particular signal to CameraLink's CC lines. SDK only."},
};
constexpr std::array kFlags{
    FlagRow{FG_CCSEL0, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_CCSEL1, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_CCSEL2, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_CCSEL3, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_CCSEL, kReadWriteAlways, 1, 0, 1},
    FlagRow{FG_DIGIO_OUTPUT, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_DIGIO_INPUT, kReadOnly, 1, 1, 0},
};
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlags) && kParameters.size() == kFlags.size());

constexpr std::array kLineGroup{FG_CCSEL, FG_CCSEL0, FG_CCSEL1, FG_CCSEL2, FG_CCSEL3};
constexpr std::array kDigitalGroup{FG_DIGIO_OUTPUT, FG_DIGIO_INPUT};
// clang-format on

constexpr std::array kAreaEntries{
    EnumField{"  Exsync",  CC_EXSYNC,          "CC_EXSYNC"         },
    EnumField{"! Exsync",  CC_NOT_EXSYNC,      "CC_NOT_EXSYNC"     },
    EnumField{"  HD-Sync", CC_HDSYNC,          "CC_HDSYNC"         },
    EnumField{"! HD-Sync", CC_NOT_HDSYNC,      "CC_NOT_HDSYNC"     },
    EnumField{"  Flash",   CC_STROBEPULSE,     "CC_STROBEPULSE"    },
    EnumField{"! Flash",   CC_NOT_STROBEPULSE, "CC_NOT_STROBEPULSE"},
    EnumField{"  Clk",     CC_CLK,             "CC_CLK"            },
    EnumField{"  Gnd",     CC_GND,             "CC_GND"            },
    EnumField{"  Vcc",     CC_VCC,             "CC_VCC"            },
};

/// A line camera's second trigger stands where an area camera has its horizontal one.
constexpr auto kLineEntries = [] {
    auto entries = kAreaEntries;
    entries[2].name = "  Exsync2";
    entries[3].name = "! Exsync2";
    return entries;
}();

/// The parameter of each line, CC1 first, and its default.
struct LineRow {
    int id;
    CCsel defaultSource;
};
constexpr std::array kLines{
    LineRow{FG_CCSEL0, CC_EXSYNC},
    LineRow{FG_CCSEL1, CC_VCC   },
    LineRow{FG_CCSEL2, CC_VCC   },
    LineRow{FG_CCSEL3, CC_VCC   },
};
static_assert(kLines.size() == kCcLines);

/// \return the line of FG_CCSEL0 to FG_CCSEL3; kCcLines for any other identifier
unsigned lineOf(int id) {
    unsigned line = 0;
    while (line < kCcLines && kLines[line].id != id) ++line;
    return line;
}

}  // namespace

PSCCSignal::PSCCSignal(Fg_StdMaster* FG_base) : RSCCSignal(FG_base) {
    initRegisters();
    createParameters(*this, kParameters);
}

CCsel PSCCSignal::getCC(unsigned int port, unsigned int line) const {
    return line < kCcLines && isPort(port) ? m_portdata[port].CCSel[line] : CC_EXSYNC;
}

int PSCCSignal::setCC(unsigned int port, unsigned int line, CCsel value) {
    if (line >= kCcLines || !isPort(port)) return FG_ERROR;
    m_portdata[port].CCSel[line] = value;
    return FG_OK;
}

int PSCCSignal::getCCPSCCSignal(unsigned int port, void* memory) const {
    LineSources sources{};
    const int result = getCCSel(port, sources.data());
    if (result == FG_OK) putValue(memory, sources);
    return result;
}

int PSCCSignal::setCCPSCCSignal(unsigned int port, const void* memory) {
    return setCCSel(port, takeValue<LineSources>(memory).data());
}

int PSCCSignal::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (const unsigned line = lineOf(id); line < kCcLines) {
        putValue(val, getCC(port, line));
        return FG_OK;
    }
    switch (id) {
        case FG_CCSEL:
            return getCCPSCCSignal(port, val);
        case FG_DIGIO_INPUT:
            putValue(val, getDigIoIn(port));
            return FG_OK;
        case FG_DIGIO_OUTPUT:
            putValue(val, getDigIoOut(port));
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

int PSCCSignal::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (const unsigned line = lineOf(id); line < kCcLines) return setCC(port, line, takeValue<CCsel>(val));
    switch (id) {
        case FG_CCSEL:
            return setCCPSCCSignal(port, val);
        case FG_DIGIO_OUTPUT:
            return setDigIoOut(port, takeValue<unsigned>(val));
        case FG_DIGIO_INPUT:
            return FG_ERROR;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

int PSCCSignal::checkParam(int id, const void* val, unsigned int /*port*/) {
    if (id != FG_CCSEL) return FG_ERROR;
    for (const CCsel source : takeValue<LineSources>(val)) {
        if (source < CC_EXSYNC || source > CC_NOT_STROBEPULSE) return FG_VALUE_OUT_OF_RANGE;
    }
    return FG_OK;
}

void PSCCSignal::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSCCSignal::setFlags(unsigned int port) { publishFlags(*header, port, kFlags); }

void PSCCSignal::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    const auto& entries = mFg_Base->getIsArea(p) != 0 ? kAreaEntries : kLineEntries;
    for (const LineRow& line : kLines) {
        header->setLimits(line.id, p, entries.data(), static_cast<int>(entries.size()), line.defaultSource,
                          updateDefault);
    }
    header->setLimits(FG_CCSEL, p, nullptr, false);
    header->setLimits(FG_DIGIO_OUTPUT, p, 0, 3, 1, 3, updateDefault);
    header->setLimits(FG_DIGIO_INPUT, p, 0, 255, 1, 3, false);
}

void PSCCSignal::setRegisterInfoTree(unsigned int port) {
    publishGroup(*header, port, nullptr, "CC Signal Mapping", kLineGroup);
    publishGroup(*header, port, nullptr, "Digital I/O", kDigitalGroup);
}

const char* PSCCSignal::getDocModuleURL(int id) {
    if (id == FG_DIGIO_INPUT || id == FG_DIGIO_OUTPUT) return "feature_blocks/PSDigitalIO/PSDigitalIO.html";
    return mFg_Base->getIsArea(0) != 0 ? "feature_blocks/PSCCSignals/PSCCSignalsArea.html"
                                       : "feature_blocks/PSCCSignals/PSCCSignalsLine.html";
}
