// The configuration files of the registry: which parameters they hold and how values travel.
#include <array>
#include <clocale>
#include <tuple>

#include "StandardApplets/grabber_basis/Fg_ConfigFileParser.h"
#include "StandardApplets/grabber_basis/Fg_Error.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/result_codes.h"

namespace {

constexpr unsigned kUnreadInteger = ~0u;
constexpr double kUnreadDouble = -1.0;
constexpr const char* kLargeModelSuffix = "XXL";

/// Hosts rely on the locale that files are handled under. Where the system does not know it, nothing changes.
void enterFileLocale() { std::ignore = std::setlocale(LC_ALL, "English"); }

bool isInFiles(const Fx3Parameter& record, unsigned port) { return record.access.writeToConfigFile[port] == 1; }

// ---- Saving

void writeHeader(Fg_ConfigFileParser& file, const Fg_StdMaster& master) {
    file.writeConfigFileHeader();
    file.writeConfigFile("Hersteller", master.getManufactor());
    file.writeConfigFile("Typ", master.getCameraType());
    file.writeConfigFile("Version", master.getCameraVersion());
    file.writeConfigFileIntKey("LoadAppletId", master.Fg_getAppletId());
    file.writeConfigFileIntKey("AktivePort", master.getActivePort());
}

/// Writes the line of one parameter. A value that cannot be read shows in its line, not in the result.
void saveParameter(const Fx3ParameterHeader& registry, Fg_ConfigFileParser& file, const Fx3Parameter& record,
                   int port) {
    const int id = record.description.id;
    const char* key = record.description.defineName.c_str();
    switch (record.data.type) {
        case TYPE_INT:
        case TYPE_ENUM: {
            unsigned value = kUnreadInteger;
            std::ignore = registry.getParameterById(id, &value, port);
            file.writeConfigFileIntKey(key, static_cast<int>(value));
            break;
        }
        case TYPE_DOUBLE: {
            double value = kUnreadDouble;
            std::ignore = registry.getParameterById(id, &value, port);
            file.writeConfigFileDoubleKey(key, value);
            break;
        }
        case TYPE_STRING: {
            std::array<char, kTextCapacity> text{};
            std::ignore = registry.getParameterById(id, text.data(), port, FG_PARAM_TYPE_CHAR_PTR);
            file.writeConfigFile(key, text.data());
            break;
        }
        case TYPE_OTHER:
            std::ignore = record.mParent->saveParmeter(port, id, key, file.getFile());
            break;
        case TYPE_DIRECT:
            break;
    }
}

// ---- Loading

/// Reports a refusal and returns it.
int refuse(Fg_Error& err, const char* text) {
    std::ignore = err.setErrLevel2(FG_FILE_REJECTED, text);
    return FG_FILE_REJECTED;
}

/// \return the text of a header key; "Error", reported with \p missing, without one
std::string headerText(Fg_ConfigFileParser& file, const char* key, const char* missing, Fg_Error& err) {
    std::string text;
    if (const int result = file.parseKeyFromLine(key, text); result != FG_OK) {
        std::ignore = err.setErrLevel2(result, missing);
    }
    return text;
}

/// Tests that the file was made for this applet and takes its active port over. A refused header changes nothing.
int loadHeader(Fg_ConfigFileParser& file, Fg_StdMaster& master, Fg_Error& err) {
    if (headerText(file, "Hersteller", "token \"Hersteller\" not found", err) != master.getManufactor()) {
        return refuse(err, "invalid manufactor token found");
    }
    const std::string type = headerText(file, "Typ", "token \"Typ\" not found", err);
    if (type != master.getCameraType() && type + kLargeModelSuffix != master.getCameraType()) {
        return refuse(err, "invalid camera type found");
    }
    int activePort = 0;
    if (file.parseIntKeyFromHeader("AktivePort", &activePort) != FG_OK) {
        return refuse(err, "Token \"AktivePort\" not found");
    }
    master.setActivePort(activePort);
    return FG_OK;
}

/// Applies the line of one parameter, if the file has it. Neither limits nor access are tested, and one refused
/// value does not keep the others from being applied.
void loadParameter(Fx3ParameterHeader& registry, Fg_ConfigFileParser& file, const Fx3Parameter& record, int port) {
    const int id = record.description.id;
    const char* key = record.description.defineName.c_str();
    const auto apply = [&](const void* value) {
        std::ignore = registry.setParameterById(id, value, static_cast<unsigned>(port), false, FG_PARAM_TYPE_AUTO);
    };
    switch (record.data.type) {
        case TYPE_INT:
        case TYPE_ENUM:
            if (int value = 0; file.parseIntKeySection(port, key, &value) == FG_OK) apply(&value);
            break;
        case TYPE_DOUBLE:
            if (double value = 0; file.parseDoubleKeySection(port, key, &value) == FG_OK) apply(&value);
            break;
        case TYPE_STRING:
            if (std::string text; file.parseKeySection(port, key, text) == FG_OK) apply(text.c_str());
            break;
        case TYPE_OTHER: {
            std::string ownKey = key;
            std::ignore = record.mParent->loadParameter(port, id, ownKey.data(), file.getFile());
            break;
        }
        case TYPE_DIRECT:
            break;
    }
}

}  // namespace

int Fx3ParameterHeader::saveAllParameters(const char* Filename, Fg_StdMaster* Fg_parent, Fg_Log* log) const {
    enterFileLocale();
    Fg_ConfigFileParser file(log, nullptr, false);
    if (!file.setSaveFile(Filename)) return FG_FILE_NOT_ACCESSIBLE;
    writeHeader(file, *Fg_parent);
    for (unsigned port = 0; port < kPorts; ++port) {
        file.writeConfigFileByPort(static_cast<int>(port));
        for (const auto& [id, record] : paramSearchTable) {
            if (isInFiles(*record, port)) saveParameter(*this, file, *record, static_cast<int>(port));
        }
    }
    return file.hasWriteFailed() ? FG_FILE_NOT_ACCESSIBLE : FG_OK;
}

int Fx3ParameterHeader::loadAllParameters(const char* Filename, Fg_StdMaster* Fg_parent, Fg_Log* log, Fg_Error* err) {
    enterFileLocale();
    Fg_ConfigFileParser file(log, Filename, true);
    if (!file.checkFileType(Filename)) return refuse(*err, "no mcf file");
    if (file.getFile() == nullptr) return refuse(*err, "cannot find file");
    if (const int refused = loadHeader(file, *Fg_parent, *err); refused != FG_OK) return refused;
    for (unsigned port = 0; port < kPorts; ++port) {
        for (const auto& [id, record] : paramSearchTable) {
            if (isInFiles(*record, port)) loadParameter(*this, file, *record, static_cast<int>(port));
        }
    }
    // What single writes left behind in hardware is settled here for the port that is active at the end.
    std::ignore = updateAllParametersPS(static_cast<unsigned>(Fg_parent->getActivePort()));
    return FG_OK;
}
