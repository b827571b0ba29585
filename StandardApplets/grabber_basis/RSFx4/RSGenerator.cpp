#include "StandardApplets/grabber_basis/RSFx4/RSGenerator.h"

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr double kInitialFrequencyMHz = 40.0;
constexpr uint16_t kInitialAccuracy = 25;
constexpr unsigned kFullWidthBits = 32;

/// One parameter behind each register pair is enough; the enable comes late, so that a picture starts complete.
constexpr std::array kFullUpdate{
    FG_GEN_WIDTH, FG_GEN_HEIGHT, FG_GEN_LINE_GAP, FG_GEN_FREQ,  FG_GEN_ACCURACY,
    FG_GEN_TAP1,  FG_GEN_ROLL,   FG_GEN_ENABLE,   FG_GEN_START,
};

/// Positions in kRegisters.
enum : size_t { kActive, kPassive, kWidth, kLineWidth, kHeight, kMask, kRoll, kEnable, kStart };

/// \return the largest value of a register with \p bits bits
unsigned capacityOf(unsigned bits) { return bits >= kFullWidthBits ? ~0u : (1u << bits) - 1; }

}  // namespace

// clang-format off
const std::array<RSGenerator::Register, 9> RSGenerator::kRegisters{{
    {&PortData::wReg_GenActive, &RSGenerator::mGenActive, Unit::kValue, "AAGenActive", &PortData::maxActive},
    {&PortData::wReg_GenPassive, &RSGenerator::mGenPassive, Unit::kValue, "AAGenPassive", &PortData::maxPassive},
    {&PortData::wReg_GenWidth, &RSGenerator::mGenWidth, Unit::kHalfClocks, "AAGenWidth", nullptr},
    {&PortData::wReg_GenLineWidth, &RSGenerator::mGenLineWidth, Unit::kHalfClocks, "AAGenLineWidth", nullptr},
    {&PortData::wReg_GenHeight, &RSGenerator::mGenHeight, Unit::kOneLess, "AAGenHeight", nullptr},
    {&PortData::wReg_GenMask, &RSGenerator::mGenMask, Unit::kValue, "AAGenMask", nullptr},
    {&PortData::wReg_GenRoll, &RSGenerator::mGenRoll, Unit::kValue, "AAGenRoll", nullptr},
    {&PortData::wReg_GenEnable, &RSGenerator::mGenEnable, Unit::kValue, "AAGenEnable", nullptr},
    {&PortData::wReg_GenStart, &RSGenerator::mGenStart, Unit::kValue, "AAGenStart", nullptr},
}};

const std::array<RSGenerator::Update, 12> RSGenerator::kUpdates{{
    {FG_GEN_ENABLE, &kRegisters[kEnable], nullptr},
    {FG_GEN_WIDTH, &kRegisters[kWidth], &kRegisters[kLineWidth]},
    {FG_GEN_LINE_GAP, &kRegisters[kWidth], &kRegisters[kLineWidth]},
    {FG_GEN_HEIGHT, &kRegisters[kHeight], nullptr},
    {FG_GEN_FREQ, &kRegisters[kPassive], &kRegisters[kActive]},
    {FG_GEN_ACCURACY, &kRegisters[kPassive], &kRegisters[kActive]},
    {FG_GEN_TAP1, &kRegisters[kMask], nullptr},
    {FG_GEN_TAP2, &kRegisters[kMask], nullptr},
    {FG_GEN_TAP3, &kRegisters[kMask], nullptr},
    {FG_GEN_TAP4, &kRegisters[kMask], nullptr},
    {FG_GEN_ROLL, &kRegisters[kRoll], nullptr},
    {FG_GEN_START, &kRegisters[kStart], nullptr},
}};
// clang-format on

RSGenerator::RSGenerator(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) { RSGenerator::makeRegistersNull(); }

void RSGenerator::makeRegistersNull() {
    RSMaster::makeRegistersNull();
    m_portdata = {};
    for (const Register& reg : kRegisters) this->*reg.cache = 0;
    mGenLineGap = 0;
    mGenFreq = kInitialFrequencyMHz;
    mGenAccuracy = kInitialAccuracy;
}

void RSGenerator::initRegisters() {
    PortData& generator = m_portdata.front();
    for (const Register& reg : kRegisters) {
        unsigned bits = 0;
        initRegister(&(generator.*reg.handle), reg.name, reg.capacity == nullptr ? nullptr : &bits);
        if (reg.capacity != nullptr && generator.*reg.handle > 0) generator.*reg.capacity = capacityOf(bits);
    }
}

unsigned int RSGenerator::maxActive() const { return m_portdata.front().maxActive; }

unsigned int RSGenerator::maxPassive() const { return m_portdata.front().maxPassive; }

int RSGenerator::writeRegister(unsigned port, const Register& reg) {
    const int handle = m_portdata.front().*reg.handle;
    const unsigned cached = this->*reg.cache;
    switch (reg.unit) {
        case Unit::kHalfClocks:
            return writeHandle(handle,
                               cached * 2 / static_cast<unsigned>(mFg_Base->getDivFactor(static_cast<int>(port))));
        case Unit::kOneLess:
            return writeHandle(handle, cached - 1);
        case Unit::kValue:
            break;
    }
    return writeHandle(handle, cached);
}

int RSGenerator::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    for (const Update& update : kUpdates) {
        if (update.id != parameter) continue;
        const int first = writeRegister(port, *update.first);
        return first != FG_OK || update.second == nullptr ? first : writeRegister(port, *update.second);
    }
    return FG_INVALID_ARGUMENT;
}

int RSGenerator::updateAllParameters(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    int result = FG_OK;
    for (const int id : kFullUpdate) {
        if (updateParameter(port, id) < 0) result = FG_ERROR;
    }
    return result;
}
