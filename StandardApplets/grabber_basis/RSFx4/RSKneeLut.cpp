#include "StandardApplets/grabber_basis/RSFx4/RSKneeLut.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kDefaultPixelDepth = 8;
constexpr int kDefaultFormat = 3;  // 8-bit gray
/// A monochrome camera's one curve is taken into every table that the FPGA may hold.
constexpr std::array kMonochromeStrobes{1, 2, 4, 8};

constexpr std::array kOwnParameters{
    FG_KNEE_LUT,      FG_KNEE_LUT_SCALE,          FG_KNEE_LUT_OFFSET,   FG_KNEE_LUT_GAMMA,     FG_KNEE_LUT_INVERT,
    FG_KNEE_LUT_FILE, FG_KNEE_LUT_SAVE_LOAD_FILE, FG_SCALINGFACTOR_RED, FG_SCALINGFACTOR_BLUE, FG_SCALINGFACTOR_GREEN,
};

}  // namespace

const std::array<RSKneeLut::Component, RSKneeLut::kTables> RSKneeLut::kComponents{
    {
     {&RSKneeLut::mOffsetLongR, &RSKneeLut::scalingFactorRed, 1},
     {&RSKneeLut::mOffsetLongG, &RSKneeLut::scalingFactorGreen, 2},
     {&RSKneeLut::mOffsetLongB, &RSKneeLut::scalingFactorBlue, 4},
     }
};

const std::array<RSKneeLut::Setting, 6> RSKneeLut::kSettings{
    {
     {FG_KNEE_LUT_OFFSET, &RSKneeLut::mOffset, 0.0},
     {FG_KNEE_LUT_SCALE, &RSKneeLut::mScaling, 1.0},
     {FG_KNEE_LUT_GAMMA, &RSKneeLut::mGamma, 1.0},
     {FG_SCALINGFACTOR_RED, &RSKneeLut::scalingFactorRed, 1.0},
     {FG_SCALINGFACTOR_GREEN, &RSKneeLut::scalingFactorGreen, 1.0},
     {FG_SCALINGFACTOR_BLUE, &RSKneeLut::scalingFactorBlue, 1.0},
     }
};

RSKneeLut::RSKneeLut(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) { RSKneeLut::makeRegistersNull(); }

void RSKneeLut::makeRegistersNull() {
    RSMaster::makeRegistersNull();
    for (BlockRegister* reg :
         {&mWriteReg_WrKneeLutAddress, &mWriteReg_WrKneeLutStart, &mWriteReg_WrKneeLutEnd, &mWriteReg_WrKneeLutWrite}) {
        *reg = {};
    }
    for (const Setting& setting : kSettings) (this->*setting.cache).fill(setting.initial);
    mInvert.fill(0);
    mDataFileName.fill({});
    for (unsigned table = 0; table < kTables; ++table) {
        (this->*kComponents[table].codes).fill(identityKneeCodes());
        for (KneeTable& curve : m_tables[table]) curve.installLine(table);
    }
}

void RSKneeLut::initRegisters() {
    const std::array rows{
        BlockRegisterRow{mWriteReg_WrKneeLutAddress, "AAKneeLutAddr",  "ABKneeLutAddr" },
        BlockRegisterRow{mWriteReg_WrKneeLutStart,   "AAKneeLutStart", "ABKneeLutStart"},
        BlockRegisterRow{mWriteReg_WrKneeLutEnd,     "AAKneeLutEnd",   "ABKneeLutEnd"  },
        BlockRegisterRow{mWriteReg_WrKneeLutWrite,   "AAKneeLutWrite", "ABKneeLutWrite"},
    };
    initBlockRegisters(rows);
}

// ---- Settings and curves

bool RSKneeLut::isColor(unsigned int port) const { return mFg_Base->isCameraColor(static_cast<int>(port)) != 0; }

unsigned RSKneeLut::tablesOf(unsigned int port) const { return isColor(port) ? kTables : 1; }

RSKneeLut::PortValues<double>* RSKneeLut::settingOf(int id) {
    const auto* found =
        std::find_if(kSettings.begin(), kSettings.end(), [id](const Setting& setting) { return setting.id == id; });
    return found == kSettings.end() ? nullptr : &(this->*found->cache);
}

int RSKneeLut::setLut(unsigned int port, const KneeLookupTable_s& table) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (table.id >= kTables || table.value == nullptr) return FG_INVALID_ARGUMENT;
    return m_tables[table.id][port].install(table) ? FG_OK : FG_OUT_OF_RESOURCES;
}

const KneeLookupTable_s* RSKneeLut::getLut(unsigned int port, unsigned int table) const {
    return isPort(port) && table < kTables ? &m_tables[table][port].record() : nullptr;
}

void RSKneeLut::setLutDataFileName(unsigned int port, const char* name) {
    if (isPort(port)) mDataFileName[port] = takeName(name);
}

const char* RSKneeLut::getLutDataFileName(unsigned int port) const {
    return isPort(port) ? mDataFileName[port].c_str() : "";
}

void RSKneeLut::setScalingFactorRed(unsigned int port, double value) {
    if (isPort(port)) scalingFactorRed[port] = value;
}

void RSKneeLut::setScalingFactorGreen(unsigned int port, double value) {
    if (isPort(port)) scalingFactorGreen[port] = value;
}

void RSKneeLut::setScalingFactorBlue(unsigned int port, double value) {
    if (isPort(port)) scalingFactorBlue[port] = value;
}

// ---- Calculation and load

int RSKneeLut::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (std::find(kOwnParameters.begin(), kOwnParameters.end(), parameter) == kOwnParameters.end()) {
        return FG_INVALID_ARGUMENT;
    }
    for (unsigned table = 0; table < tablesOf(port); ++table) calcLut(port, table);
    return writeLutData(port);
}

int RSKneeLut::updateAllParameters(unsigned int port) { return updateParameter(port, FG_KNEE_LUT); }

/// \return the value of another module's parameter, or \p otherwise when it cannot be read
int RSKneeLut::readOr(int id, unsigned int port, int otherwise) const {
    int value = otherwise;
    return header->getParameterById(id, &value, static_cast<int>(port)) == FG_OK ? value : otherwise;
}

void RSKneeLut::calcLut(unsigned int port, unsigned int table) {
    const KneeLookupTable_s& base = m_tables[table][port].record();
    if (base.nrOfElements != kKneePoints) return;  // the FPGA keeps its table
    std::array<double, kKneePoints> curve;
    std::copy_n(base.value, kKneePoints, curve.begin());
    const Component& component = kComponents[table];
    processKneeCurve(curve, {.componentGain = isColor(port) ? (this->*component.gain)[port] : 1.0,
                             .offset = mOffset[port],
                             .gain = mScaling[port],
                             .gamma = mGamma[port],
                             .invert = mInvert[port] != 0});
    const int shift =
        kneeShift(readOr(FG_PIXELDEPTH, port, kDefaultPixelDepth), readOr(FG_FORMAT, port, kDefaultFormat));
    (this->*component.codes)[port] = quantiseKneeCurve(curve, shift);
}

int RSKneeLut::writeLutData(unsigned int port) {
    int firstFailure = FG_OK;
    const auto write = [&](const BlockRegister& reg, int value) {
        const int result = writeHandle(reg.handle[port], static_cast<uint64_t>(value));
        if (firstFailure == FG_OK) firstFailure = result;
    };
    const auto writeEnds = [&](const KneeCodes& codes, size_t segment) {
        write(mWriteReg_WrKneeLutStart, codes[segment]);
        write(mWriteReg_WrKneeLutEnd, codes[segment + 1]);
    };
    for (size_t segment = 0; segment < kKneeSegments; ++segment) {
        writeEnds(mOffsetLongR[port], segment);
        write(mWriteReg_WrKneeLutAddress, static_cast<int>(segment));
        if (!isColor(port)) {
            for (const int strobe : kMonochromeStrobes) write(mWriteReg_WrKneeLutWrite, strobe);
            continue;
        }
        for (const Component& component : kComponents) {
            if (&component != &kComponents.front()) writeEnds((this->*component.codes)[port], segment);
            write(mWriteReg_WrKneeLutWrite, component.strobe);
        }
    }
    return firstFailure;
}
