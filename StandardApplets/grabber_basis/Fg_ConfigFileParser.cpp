#include "StandardApplets/grabber_basis/Fg_ConfigFileParser.h"

#include <cstdlib>

#include "StandardApplets/grabber_basis/Fg_Log.h"
#include "StandardApplets/grabber_basis/NumberText.h"
#include "fabrix/result_codes.h"

namespace {

constexpr const char* kHeaderSection = "[Kamerasektion]\n";
constexpr const char* kMissing = "Error";

}  // namespace

Fg_ConfigFileParser::Fg_ConfigFileParser(Fg_Log* log, const char* filename, bool readOnly) : mFg_Log(log) {
    if (filename == nullptr || !checkFileType(filename) || !checkFileExist(filename)) return;
    mConfigFile.reset(std::fopen(filename, readOnly ? "r" : "r+"));
}

bool Fg_ConfigFileParser::checkFileType(const char* fileName) const {
    const bool isRight = fileName != nullptr && contains(fileName, ".mcf");
    if (mFg_Log != nullptr) mFg_Log->Func(isRight ? "File type ok" : "File type not ok");
    return isRight;
}

bool Fg_ConfigFileParser::checkFileExist(const char* filename) const {
    const bool exists = canBeRead(filename);
    if (mFg_Log != nullptr) mFg_Log->Info(exists ? "Config File exist" : "Config File don't exist");
    return exists;
}

bool Fg_ConfigFileParser::setSaveFile(const char* filename) {
    if (!checkFileType(filename)) {
        if (mFg_Log != nullptr) mFg_Log->Error("Config File is Invalid");
        return false;
    }
    mConfigFile.reset(std::fopen(filename, "w"));
    if (mConfigFile == nullptr) {
        if (mFg_Log != nullptr) mFg_Log->Error("Config File: fopen failed");
        return false;
    }
    if (mFg_Log != nullptr) mFg_Log->Info("Config File is valid");
    return true;
}

std::FILE* Fg_ConfigFileParser::getFile() const { return mConfigFile.get(); }

bool Fg_ConfigFileParser::hasWriteFailed() const {
    return mConfigFile == nullptr || std::ferror(mConfigFile.get()) != 0;
}

// ---- Writing

void Fg_ConfigFileParser::writeConfigFileHeader() {
    writeFlushed(mConfigFile.get(), kHeaderSection);
    writeFlushed(mConfigFile.get(), "\nConfigFileVersion=2.0;\n");
}

void Fg_ConfigFileParser::writeConfigFile(const char* key, const char* value) {
    writeFlushed(mConfigFile.get(), std::string(key) + "='" + value + "';\n");
}

void Fg_ConfigFileParser::writeConfigFileValue(const char* key, const char* value) {
    writeFlushed(mConfigFile.get(), std::string(key) + "=" + value + ";\n");
}

void Fg_ConfigFileParser::writeConfigFileIntKey(const char* key, int value) {
    writeConfigFileValue(key, textFromInteger(value).c_str());
}

void Fg_ConfigFileParser::writeConfigFileUInt64Key(const char* key, uint64_t value) {
    writeConfigFileValue(key, std::to_string(value).c_str());
}

void Fg_ConfigFileParser::writeConfigFileDoubleKey(const char* key, double value) {
    writeConfigFileValue(key, shortTextFromDouble(value).c_str());
}

void Fg_ConfigFileParser::writeConfigFilePortA() { writeConfigFileByPort(0); }

void Fg_ConfigFileParser::writeConfigFilePortB() { writeConfigFileByPort(1); }

void Fg_ConfigFileParser::writeConfigFileByPort(int port) {
    writeFlushed(mConfigFile.get(), "\n" + getPortString(port) + "\n");
}

std::string Fg_ConfigFileParser::getPortString(int port) {
    return std::string("[Port ") + static_cast<char>('A' + port) + "]";
}

// ---- Reading

int Fg_ConfigFileParser::parseKeyFromLine(const char* key, std::string& value) {
    value = kMissing;
    if (mConfigFile == nullptr) return FG_KEY_MISSING;
    std::rewind(mConfigFile.get());
    Line line;
    while (readLine(mConfigFile.get(), line)) {
        if (!contains(line.data(), key)) continue;
        if (const char* text = Pieces::second(line.data(), "='"); text != nullptr) {
            value = text;
            return FG_OK;
        }
    }
    return FG_KEY_MISSING;
}

int Fg_ConfigFileParser::parseKey(const char* subsection, const char* key, std::string& value) {
    value = kMissing;
    if (mConfigFile == nullptr) return FG_KEY_MISSING;
    std::rewind(mConfigFile.get());
    const std::string start = std::string(key) + "=";
    bool isInSection = false;
    Line line;
    while (readLine(mConfigFile.get(), line)) {
        if (!isInSection) {
            isInSection = contains(line.data(), subsection);
        } else if (std::strncmp(line.data(), start.c_str(), start.size()) == 0) {
            const char* text = Pieces(line.data() + start.size(), "=;'").next();
            const bool isEmpty = text == nullptr || *text == '\r' || *text == '\n';
            value = isEmpty ? "" : text;
            return FG_OK;
        }
    }
    return FG_KEY_MISSING;
}

template <class Value>
int Fg_ConfigFileParser::parseNumber(const char* subsection, const char* key, Value* value,
                                     void (*convert)(const char*, Value*)) {
    std::string text;
    // A missing key reads as "Error" as well.
    if (parseKey(subsection, key, text) != FG_OK || contains(text.c_str(), kMissing)) return FG_ERROR;
    convert(text.c_str(), value);
    return FG_OK;
}

int Fg_ConfigFileParser::parseIntKey(const char* subsection, const char* key, int* value) {
    return parseNumber(subsection, key, value, &getIntValue);
}

int Fg_ConfigFileParser::parseUInt64Key(const char* subsection, const char* key, uint64_t* value) {
    return parseNumber(subsection, key, value, &getUInt64Value);
}

int Fg_ConfigFileParser::parseDoubleKey(const char* subsection, const char* key, double* value) {
    return parseNumber(subsection, key, value, &getDoubleValue);
}

int Fg_ConfigFileParser::parseKeySection(int port, const char* key, std::string& value) {
    return key == nullptr ? FG_ERROR : parseKey(getPortString(port).c_str(), key, value);
}

int Fg_ConfigFileParser::parseIntKeySection(int port, const char* key, int* value) {
    return key == nullptr ? FG_ERROR : parseIntKey(getPortString(port).c_str(), key, value);
}

int Fg_ConfigFileParser::parseUInt64KeySection(int port, const char* key, uint64_t* value) {
    return key == nullptr ? FG_ERROR : parseUInt64Key(getPortString(port).c_str(), key, value);
}

int Fg_ConfigFileParser::parseDoubleKeySection(int port, const char* key, double* value) {
    return key == nullptr ? FG_ERROR : parseDoubleKey(getPortString(port).c_str(), key, value);
}

int Fg_ConfigFileParser::parseIntKeyFromHeader(const char* key, int* value) {
    return parseIntKey(kHeaderSection, key, value);
}

void Fg_ConfigFileParser::getIntValue(const char* text, int* value) { *value = integerFromText(text); }

void Fg_ConfigFileParser::getUInt64Value(const char* text, uint64_t* value) {
    char* end = nullptr;
    const unsigned long long number = std::strtoull(text, &end, 10);
    if (end != text) *value = number;
}

void Fg_ConfigFileParser::getDoubleValue(const char* text, double* value) { *value = doubleFromText(text); }
