#include "StandardApplets/grabber_basis/PSFx4/PSKneeLut.h"

#include <algorithm>
#include <array>
#include <span>

#include "StandardApplets/grabber_basis/Fg_ConfigFileParser.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/NumberText.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kLoadLut = 0;  // FG_LOAD_LUT_FROM_FILE
constexpr int kSaveLut = 1;  // FG_SAVE_LUT_TO_FILE
constexpr int kOff = 0;
constexpr int kOn = 1;
constexpr const char* kGraySection = "[gray]";
constexpr double kFineStep = 1e-5;
constexpr double kFactorStep = 0.00048828125;  // 2^-11
/// Characters that are read of a curve's line, with a terminator: 1025 numbers between -9 and 99 and more.
constexpr size_t kCurveLineCapacity = 20001;

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_KNEE_LUT, TYPE_OTHER, "FG_KNEE_LUT", "Knee Lookuptable", nullptr, "Knee Lookuptable structure."},
    ParameterRow{FG_KNEE_LUT_FILE, TYPE_STRING, "FG_KNEE_LUT_FILE", "Knee Lut File", nullptr, "Set a filename for the KneeLut."},
    ParameterRow{FG_KNEE_LUT_SAVE_LOAD_FILE, TYPE_ENUM, "FG_KNEE_LUT_SAVE_LOAD_FILE", "Action", nullptr, "Perform the actions 'save' or 'load', in order to store/restore the KneeLut."},
    ParameterRow{FG_KNEE_LUT_OFFSET, TYPE_DOUBLE, "FG_KNEE_LUT_OFFSET", "Offset", nullptr, "Select a relative offset added to all pixels."},
    ParameterRow{FG_KNEE_LUT_SCALE, TYPE_DOUBLE, "FG_KNEE_LUT_SCALE", "Gain", nullptr, "Select a scaling factor for all pixels."},
    ParameterRow{FG_KNEE_LUT_GAMMA, TYPE_DOUBLE, "FG_KNEE_LUT_GAMMA", "Gamma", nullptr, "Gamma correction applied to all pixels."},
    ParameterRow{FG_KNEE_LUT_INVERT, TYPE_ENUM, "FG_KNEE_LUT_INVERT", "Invert", nullptr, "Invert all pixels."},
    ParameterRow{FG_SCALINGFACTOR_RED, TYPE_DOUBLE, "FG_SCALINGFACTOR_RED", "Red Gain", nullptr, "Select a scaling factor for the red component."},
    ParameterRow{FG_SCALINGFACTOR_GREEN, TYPE_DOUBLE, "FG_SCALINGFACTOR_GREEN", "Green Gain", nullptr, "Select a scaling factor for the green component."},
    ParameterRow{FG_SCALINGFACTOR_BLUE, TYPE_DOUBLE, "FG_SCALINGFACTOR_BLUE", "Blue Gain", nullptr, "Select a scaling factor for the blue component."},
};
constexpr std::array kFlags{
    FlagRow{FG_KNEE_LUT, kReadWriteAlways, 1, 0, 1},
    FlagRow{FG_KNEE_LUT_FILE, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_KNEE_LUT_SAVE_LOAD_FILE, kWriteAlways, 1, 1, 0},
    FlagRow{FG_KNEE_LUT_OFFSET, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_KNEE_LUT_SCALE, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_KNEE_LUT_GAMMA, kReadWriteAlways, 1, 1, 1},
    FlagRow{FG_KNEE_LUT_INVERT, kReadWriteAlways, 1, 1, 1},
};
// clang-format on
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlags));

constexpr std::array kTableGroup{FG_KNEE_LUT, FG_KNEE_LUT_FILE, FG_KNEE_LUT_SAVE_LOAD_FILE};
constexpr std::array kComponentFactors{FG_SCALINGFACTOR_RED, FG_SCALINGFACTOR_GREEN, FG_SCALINGFACTOR_BLUE};
constexpr std::array kProcessingGroup{
    FG_KNEE_LUT_OFFSET,   FG_KNEE_LUT_SCALE,      FG_KNEE_LUT_GAMMA,     FG_KNEE_LUT_INVERT,
    FG_SCALINGFACTOR_RED, FG_SCALINGFACTOR_GREEN, FG_SCALINGFACTOR_BLUE,
};

/// A change of these changes the codes.
constexpr std::array kCodesDependOn{FG_FORMAT, FG_PIXELDEPTH, FG_CAMERA_LINK_CAMTYP, FG_BITALIGNMENT};

constexpr std::array kActions{
    EnumField{"Load LUT from File", kLoadLut, "FG_LOAD_LUT_FROM_FILE"},
    EnumField{"Save LUT to File",   kSaveLut, "FG_SAVE_LUT_TO_FILE"  },
};
constexpr std::array kInvertEntries{
    EnumField{"On",  kOn,  "FG_ON" },
    EnumField{"Off", kOff, "FG_OFF"},
};

/// Finds the line of a key in the section of a port. The key may stand anywhere in a line that has a "=" where the
/// key of a line ends.
bool findCurveLine(std::FILE* file, int port, const std::string& key, std::array<char, kCurveLineCapacity>& line) {
    const std::string section = Fg_ConfigFileParser::getPortString(port);
    std::rewind(file);
    bool isInSection = false;
    while (readLine(file, line)) {
        if (!isInSection) {
            isInSection = contains(line.data(), section.c_str());
        } else if (contains(line.data(), key.c_str()) && line[key.size()] == '=') {
            return true;
        }
    }
    return false;
}

/// Reads the numbers of a curve's line; points that it lacks stay.
void readPoints(char* line, std::span<double> points) {
    Pieces pieces(line, "=,;");
    const char* piece = pieces.next();  // the key
    for (double& point : points) {
        piece = pieces.next();
        const bool isLineEnd = piece == nullptr || *piece == '\r' || *piece == '\n';
        if (isLineEnd) return;
        point = doubleFromText(piece);
    }
}

}  // namespace

PSKneeLut::PSKneeLut(Fg_StdMaster* FG_base) : RSKneeLut(FG_base) {
    initRegisters();
    createParameters(*this, kParameters);
    for (const int id : kCodesDependOn) header->addUpdateDependency(0, id, FG_KNEE_LUT, false);
}

// ---- Values

int PSKneeLut::readCurve(void* val, unsigned int port) const {
    auto table = takeValue<KneeLookupTable_s>(val);
    const KneeLookupTable_s* curve = getLut(port, table.id);
    if (curve == nullptr) return FG_INVALID_ARGUMENT;
    if (table.value != nullptr) std::copy_n(curve->value, curve->nrOfElements, table.value);
    table.nrOfElements = curve->nrOfElements;
    table.format = curve->format;
    table.id = curve->id;
    table.number = curve->number;
    putValue(val, table);
    return FG_OK;
}

int PSKneeLut::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (const auto* setting = settingOf(id); setting != nullptr) {
        putValue(val, (*setting)[port]);
        return FG_OK;
    }
    switch (id) {
        case FG_KNEE_LUT:
            return readCurve(val, port);
        case FG_KNEE_LUT_FILE:
            putText(val, mDataFileName[port]);
            return FG_OK;
        case FG_KNEE_LUT_INVERT:
            putValue(val, mInvert[port]);
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

int PSKneeLut::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (auto* setting = settingOf(id); setting != nullptr) {
        (*setting)[port] = takeValue<double>(val);
        return FG_OK;
    }
    switch (id) {
        case FG_KNEE_LUT:
            return setLut(port, takeValue<KneeLookupTable_s>(val));
        case FG_KNEE_LUT_FILE:
            setLutDataFileName(port, static_cast<const char*>(val));
            return FG_OK;
        case FG_KNEE_LUT_SAVE_LOAD_FILE:
            return takeValue<int>(val) == kLoadLut ? loadLutFile(port) : saveLutFile(port);
        case FG_KNEE_LUT_INVERT:
            mInvert[port] = takeValue<int>(val);
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

int PSKneeLut::checkParam(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id != FG_KNEE_LUT) return FG_INVALID_ARGUMENT;
    return takeValue<KneeLookupTable_s>(val).nrOfElements == kKneePoints ? FG_OK : FG_VALUE_OUT_OF_RANGE;
}

// ---- LUT files

int PSKneeLut::saveLutFile(unsigned int port) {
    const char* name = getLutDataFileName(port);
    const int result = isColor(port) ? lutParser.saveLutToFile(name, getLut(port, 0), getLut(port, 1), getLut(port, 2))
                                     : lutParser.saveLutToFile(name, getLut(port, 0), kGraySection);
    return result == FG_OK ? FG_OK : FG_FILE_NOT_ACCESSIBLE;
}

int PSKneeLut::loadLutFile(unsigned int port) {
    const char* name = getLutDataFileName(port);
    if (!lutParser.checkFileExist(name)) return FG_FILE_REJECTED;
    std::array<KneeTable, kTables> read;
    for (unsigned table = 0; table < kTables; ++table) {
        read[table].record().id = table;
        read[table].record().nrOfElements = kKneePoints;
        read[table].record().format = kKneeFormat;
    }
    const int result = isColor(port)
                           ? lutParser.getLutFromFile(name, &read[0].record(), &read[1].record(), &read[2].record())
                           : lutParser.getLutFromFile(name, &read[0].record(), kGraySection);
    if (result != FG_OK) return FG_FILE_NOT_ACCESSIBLE;
    for (const KneeTable& table : std::span(read).first(tablesOf(port))) {
        if (const int failed = setLut(port, table.record()); failed != FG_OK) return failed;
    }
    return FG_OK;
}

// ---- Lines in configuration files

int PSKneeLut::saveParmeter(int port, int id, const char* key, std::FILE* file) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id != FG_KNEE_LUT) return FG_INVALID_ARGUMENT;
    const auto index = static_cast<unsigned>(port);
    for (unsigned table = 0; table < tablesOf(index); ++table) {
        const KneeLookupTable_s& curve = *getLut(index, table);
        std::string line = key + std::to_string(curve.id) + "=";
        const char* separator = "";
        for (const double value : std::span(curve.value, curve.nrOfElements)) {
            line += separator;
            line += fixedTextFromDouble(value);
            separator = ", ";
        }
        line += ";\n";
        writeFlushed(file, line);
    }
    return FG_OK;
}

int PSKneeLut::loadParameter(int port, int id, char* key, std::FILE* file) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id != FG_KNEE_LUT) return FG_INVALID_ARGUMENT;
    const auto index = static_cast<unsigned>(port);
    for (unsigned table = 0; table < tablesOf(index); ++table) {
        if (const int failed = loadCurve(index, table, key, file); failed != FG_OK) return failed;
    }
    return FG_OK;
}

int PSKneeLut::loadCurve(unsigned int port, unsigned int table, const char* key, std::FILE* file) {
    std::array<char, kCurveLineCapacity> line;
    if (!findCurveLine(file, static_cast<int>(port), key + std::to_string(table), line)) return FG_OK;
    const KneeLookupTable_s& former = m_tables[table][port].record();
    std::array<double, kKneePoints> points{};
    std::copy_n(former.value, std::min<size_t>(former.nrOfElements, kKneePoints), points.begin());
    readPoints(line.data(), points);
    KneeLookupTable_s read = former;
    read.value = points.data();
    read.nrOfElements = kKneePoints;
    return setLut(port, read);
}

// ---- Descriptions

void PSKneeLut::setDescriptions() { publishDescriptions(*header, kParameters); }

void PSKneeLut::setLimits(unsigned int port, bool updateDefault) {
    const int p = static_cast<int>(port);
    void* const noDefault = nullptr;
    header->setLimits(FG_KNEE_LUT, p, noDefault, false);
    header->setLimits(FG_KNEE_LUT_FILE, p, " ", "*.lut", updateDefault);
    header->setLimits(FG_KNEE_LUT_SAVE_LOAD_FILE, p, kActions.data(), static_cast<int>(kActions.size()), kLoadLut,
                      false);
    header->setLimits(FG_KNEE_LUT_OFFSET, p, -1.0, 1.0, kFineStep, 0.0, updateDefault);
    header->setLimits(FG_KNEE_LUT_SCALE, p, -65536.0, 65536.0, kFineStep, 1.0, updateDefault);
    header->setLimits(FG_KNEE_LUT_GAMMA, p, 0.0, 10.0, kFineStep, 1.0, updateDefault);
    header->setLimits(FG_KNEE_LUT_INVERT, p, kInvertEntries.data(), static_cast<int>(kInvertEntries.size()), kOff,
                      updateDefault);
    for (const int id : kComponentFactors) {
        header->setLimits(id, p, 0.0, 4096.0, kFactorStep, 1.0, updateDefault);
    }
}

void PSKneeLut::setFlags(unsigned int port) {
    publishFlags(*header, port, kFlags);
    const int isShown = isColor(port) ? 1 : 0;
    for (const int id : kComponentFactors) {
        header->setFlags(id, static_cast<int>(port), kReadWriteAlways, 1, isShown, 1);
    }
}

void PSKneeLut::setRegisterInfoTree(unsigned int port) {
    publishGroup(*header, port, nullptr, "Knee Lookup Table", kTableGroup);
    publishGroup(*header, port, nullptr, "Processing", kProcessingGroup);
}

const char* PSKneeLut::getDocModuleURL(int id) {
    const bool isTable = std::find(kTableGroup.begin(), kTableGroup.end(), id) != kTableGroup.end();
    return isTable ? "feature_blocks/PSKneeLut/PSKneeLut1024.html" : "feature_blocks/PSProcessing/PSProcessing.html";
}
