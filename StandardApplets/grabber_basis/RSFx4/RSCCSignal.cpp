#include "StandardApplets/grabber_basis/RSFx4/RSCCSignal.h"

#include <algorithm>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr unsigned kPortA = 0;
constexpr unsigned kPortB = 1;

/// The four bits of a line in the configuration register: bits 0 to 2 select the source, bit 3 inverts it.
struct SourceRow {
    CCsel source;
    unsigned nibble;
};
constexpr std::array kSources{
    SourceRow{CC_EXSYNC,          0x0},
    SourceRow{CC_EXSYNC2,         0x1},
    SourceRow{CC_STROBEPULSE,     0x2},
    SourceRow{CC_CLK,             0x3},
    SourceRow{CC_GND,             0x4},
    SourceRow{CC_VCC,             0xC},
    SourceRow{CC_NOT_EXSYNC,      0x8},
    SourceRow{CC_NOT_EXSYNC2,     0x9},
    SourceRow{CC_NOT_STROBEPULSE, 0xA},
};
constexpr unsigned kNibbleBits = 4;

/// The nibbles by the numbers of the sources.
constexpr auto kNibbles = [] {
    std::array<unsigned, CC_NOT_STROBEPULSE + 1> nibbles{};
    for (const SourceRow& row : kSources) nibbles[static_cast<unsigned>(row.source)] = row.nibble;
    return nibbles;
}();

/// \return the nibble of a source; the first one for a number that is no source
constexpr unsigned nibbleOf(CCsel source) {
    const auto number = static_cast<unsigned>(source);
    return number < kNibbles.size() ? kNibbles[number] : kSources.front().nibble;
}

constexpr unsigned ccConfiguration(const std::array<CCsel, kCcLines>& lines) {
    unsigned value = 0;
    for (unsigned line = 0; line < kCcLines; ++line) value |= nibbleOf(lines[line]) << line * kNibbleBits;
    return value;
}

constexpr unsigned kAllHigh = ccConfiguration({CC_VCC, CC_VCC, CC_VCC, CC_VCC});

}  // namespace

RSCCSignal::RSCCSignal(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

void RSCCSignal::makeRegistersNull() {
    RSMaster::makeRegistersNull();
    m_portdata = {};
}

void RSCCSignal::initRegisters() {
    PortData& a = m_portdata[kPortA];
    PortData& b = m_portdata[kPortB];
    initRegister(&a.readReg_DigIoIn, "AATrg_DigitalIn", nullptr);
    initRegister(&a.writeReg_DigIoOut, "AATrg_DigitalOut", nullptr);
    initRegister(&a.writeReg_CcConfig, "AATrg_CCConfig", nullptr);
    initRegister(&b.writeReg_CcConfig, "ABTrg_CCConfig", nullptr);
    b.readReg_DigIoIn = a.readReg_DigIoIn;
    b.writeReg_DigIoOut = a.writeReg_DigIoOut;
    if (!IsTwoCamModel() && !isMedium()) b.writeReg_CcConfig = a.writeReg_CcConfig;
}

int RSCCSignal::getCCSel(unsigned int port, CCsel* sel) const {
    if (!isPort(port)) return FG_ERROR;
    std::copy_n(m_portdata[port].CCSel.begin(), kCcLines, sel);
    return FG_OK;
}

int RSCCSignal::setCCSel(unsigned int port, const CCsel* sel) {
    if (!isPort(port)) return FG_ERROR;
    std::copy_n(sel, kCcLines, m_portdata[port].CCSel.begin());
    return FG_OK;
}

unsigned int RSCCSignal::getDigIoIn(unsigned int port) {
    return readRegisterDigIoIn(port) == FG_OK ? m_portdata[port].v_DigIoIn : 0;
}

int RSCCSignal::setDigIoOut(unsigned int port, unsigned int value) {
    if (!isPort(port)) return FG_ERROR;
    m_portdata[port].v_DigIoOut = value;
    return FG_OK;
}

unsigned int RSCCSignal::getDigIoOut(unsigned int port) const { return isPort(port) ? m_portdata[port].v_DigIoOut : 0; }

int RSCCSignal::writeCcSelDirect(unsigned int port) {
    if (!isPort(port)) return FG_ERROR;
    return writeHandle(m_portdata[port].writeReg_CcConfig, ccConfiguration(m_portdata[port].CCSel));
}

int RSCCSignal::writeRegisterDigIoOut(unsigned int port) {
    if (!isPort(port)) return FG_ERROR;
    return writeHandle(m_portdata[port].writeReg_DigIoOut, m_portdata[port].v_DigIoOut);
}

int RSCCSignal::readRegisterDigIoIn(unsigned int port) {
    if (!isPort(port)) return FG_ERROR;
    m_portdata[port].v_DigIoIn = static_cast<unsigned>(mBoard->readRegister(m_portdata[port].readReg_DigIoIn));
    return FG_OK;
}

int RSCCSignal::updateParameter(unsigned int port, int parameter) {
    switch (parameter) {
        case FG_CCSEL:
        case FG_CCSEL0:
        case FG_CCSEL1:
        case FG_CCSEL2:
        case FG_CCSEL3:
            if (isMedium() && port == kPortB) return writeHandle(m_portdata[kPortB].writeReg_CcConfig, kAllHigh);
            return writeCcSelDirect(port);
        case FG_DIGIO_OUTPUT:
            return writeRegisterDigIoOut(port);
        default:
            return FG_ERROR;
    }
}

int RSCCSignal::updateAllParameters(unsigned int port) {
    const int outputs = updateParameter(port, FG_DIGIO_OUTPUT);
    const int lines = updateParameter(port, FG_CCSEL);
    return outputs < 0 || lines < 0 ? FG_ERROR : FG_OK;
}
