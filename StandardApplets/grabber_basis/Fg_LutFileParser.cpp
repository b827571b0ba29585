#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"

#include <span>
#include <tuple>

#include "StandardApplets/grabber_basis/NumberText.h"
#include "fabrix/result_codes.h"

namespace {

constexpr const char* kKeySeparator = "=";
constexpr const char* kKeySeparators = "='";
constexpr const char* kTableSeparator = ",";
constexpr const char* kEmptyLine = "\n\n";  // ends a title line and adds an empty one
constexpr const char* kCountKey = "nrOfElements";
/// Entries of a plain table: far more than 16-bit components need, and little enough to allocate on a file's word.
constexpr unsigned kMaxPlainEntries = 1u << 20;

}  // namespace

bool Fg_LutFileParser::checkFileType(const char* path) { return path != nullptr && contains(path, ".lut"); }

bool Fg_LutFileParser::checkFileExist(const char* path) { return canBeRead(path); }

bool Fg_LutFileParser::open(const char* path, const char* mode) {
    mConfigFile.reset();
    if (path != nullptr) mConfigFile.reset(std::fopen(path, mode));
    return mConfigFile != nullptr;
}

bool Fg_LutFileParser::setSaveFile(const char* path) { return checkFileType(path) && open(path, "w"); }

bool Fg_LutFileParser::setOpenFile(const char* path, bool readOnly) {
    return checkFileType(path) && checkFileExist(path) && open(path, readOnly ? "r" : "r+");
}

// ---- Writing

void Fg_LutFileParser::writeLutFileHeader(const char* text) { writeFlushed(mConfigFile.get(), text); }

void Fg_LutFileParser::writeLutFileValue(const char* key, const char* value, const char* separator) {
    writeFlushed(mConfigFile.get(), std::string(key) + separator + value + ";\n");
}

void Fg_LutFileParser::writeIntKey(const char* key, int value, const char* separator) {
    writeLutFileValue(key, textFromInteger(value).c_str(), separator);
}

void Fg_LutFileParser::writeDoubleKey(const char* key, double value, const char* separator) {
    writeLutFileValue(key, shortTextFromDouble(value).c_str(), separator);
}

void Fg_LutFileParser::writeIntInt(int index, int value, const char* separator) {
    writeIntKey(textFromInteger(index).c_str(), value, separator);
}

void Fg_LutFileParser::writeIntDouble(int index, double value, const char* separator) {
    writeLutFileValue(textFromInteger(index).c_str(), fixedTextFromDouble(value).c_str(), separator);
}

int Fg_LutFileParser::writeResult() const { return std::ferror(mConfigFile.get()) == 0 ? FG_OK : FG_ERROR; }

// ---- Reading

int Fg_LutFileParser::parseKeyFromLine(const char* key, std::string& value, const char* separators) {
    value = "Error";
    if (mConfigFile == nullptr) return FG_ERROR;
    std::rewind(mConfigFile.get());
    Line line;
    while (readLine(mConfigFile.get(), line)) {
        if (!contains(line.data(), key)) continue;
        const char* piece = Pieces::second(line.data(), separators);
        if (piece == nullptr) return FG_ERROR;
        value = piece;
        return FG_OK;
    }
    return FG_ERROR;
}

int Fg_LutFileParser::parseIntKey(const char* key, int* value, const char* separators) {
    std::string text;
    const int result = parseKeyFromLine(key, text, separators);
    getIntValue(text.c_str(), value);
    return result;
}

int Fg_LutFileParser::parseDoubleKey(const char* key, double* value, const char* separators) {
    std::string text;
    const int result = parseKeyFromLine(key, text, separators);
    getDoubleValue(text.c_str(), value);
    return result;
}

template <class Store>
void Fg_LutFileParser::readTable(int count, const char* separators, const char* section, Store store) {
    if (mConfigFile == nullptr) return;
    std::rewind(mConfigFile.get());
    bool isInSection = section == nullptr;
    int index = 0;
    std::string expected = "0,";
    Line line;
    while (index < count && readLine(mConfigFile.get(), line)) {
        isInSection = isInSection || contains(line.data(), section);
        if (!isInSection || !contains(line.data(), expected.c_str())) continue;
        if (const char* text = Pieces::second(line.data(), separators); text != nullptr) store(index, text);
        ++index;
        expected = textFromInteger(index) + kTableSeparator;
    }
}

int Fg_LutFileParser::parseIntInt(int* values, int count, const char* separators) {
    readTable(count, separators, nullptr, [values](int i, const char* text) { getIntValue(text, values + i); });
    return FG_OK;
}

int Fg_LutFileParser::parseIntDouble(double* values, int count, const char* separators, const char* section) {
    readTable(count, separators, section, [values](int i, const char* text) { getDoubleValue(text, values + i); });
    return FG_OK;
}

void Fg_LutFileParser::getIntValue(const char* text, int* value) { *value = integerFromText(text); }

void Fg_LutFileParser::getDoubleValue(const char* text, double* value) { *value = doubleFromText(text); }

// ---- Plain tables

int Fg_LutFileParser::saveLutToFile(const char* path, const LookupTable_s* table) {
    if (!setSaveFile(path)) return FG_ERROR;
    writeLutFileHeader("# Lut data file v1.1\n\n");
    writeIntKey("id", static_cast<int>(table->id), kKeySeparator);
    writeIntKey(kCountKey, static_cast<int>(table->nrOfElements), kKeySeparator);
    writeIntKey("format", static_cast<int>(table->format), kKeySeparator);
    writeIntKey("number", table->number, kKeySeparator);
    int index = 0;
    for (const uint32_t entry : std::span(table->lut, table->nrOfElements)) {
        writeIntInt(index++, static_cast<int>(entry), kTableSeparator);
    }
    return writeResult();
}

int Fg_LutFileParser::getLutFromFile(const char* path, LookupTable_s* table, const char* /*section*/) {
    delete[] table->lut;
    table->lut = nullptr;
    if (!setOpenFile(path, true)) return FG_ERROR;
    const auto read = [this](const char* key) {
        int value = 0;
        std::ignore = parseIntKey(key, &value, kKeySeparators);  // a missing key reads as 0
        return static_cast<uint32_t>(value);
    };
    table->id = read("id");
    table->nrOfElements = 0;
    const uint32_t count = read(kCountKey);
    if (count > kMaxPlainEntries) return FG_ERROR;
    table->lut = new uint32_t[count]();
    table->nrOfElements = count;
    table->format = read("format");
    table->number = static_cast<uint8_t>(read("number"));
    readTable(static_cast<int>(count), kTableSeparator, nullptr,
              [table](int i, const char* text) { table->lut[i] = static_cast<uint32_t>(integerFromText(text)); });
    return FG_OK;
}

// ---- Knee tables

void Fg_LutFileParser::writeTable(const KneeLookupTable_s& table) {
    int index = 0;
    for (const double value : std::span(table.value, table.nrOfElements)) {
        writeIntDouble(index++, value, kTableSeparator);
    }
}

int Fg_LutFileParser::saveLutToFile(const char* path, const KneeLookupTable_s* table, const char* section) {
    if (!setSaveFile(path)) return FG_ERROR;
    writeLutFileHeader("# KneeLut data file v1.0\n\n");
    writeLutFileHeader(section);
    writeLutFileHeader(kEmptyLine);
    writeTable(*table);
    return writeResult();
}

int Fg_LutFileParser::getLutFromFile(const char* path, KneeLookupTable_s* table, const char* section) {
    delete[] table->value;
    table->value = nullptr;
    if (!setOpenFile(path, true)) return FG_ERROR;
    table->value = new double[table->nrOfElements]();
    return parseIntDouble(table->value, static_cast<int>(table->nrOfElements), kTableSeparator, section);
}

int Fg_LutFileParser::saveLutToFile(const char* path, const KneeLookupTable_s* red, const KneeLookupTable_s* green,
                                    const KneeLookupTable_s* blue) {
    if (!setSaveFile(path)) return FG_ERROR;
    writeLutFileHeader("# KneeLut data file v1.1");
    const struct {
        const char* section;
        const KneeLookupTable_s* table;
    } parts[] = {
        {"[red]",   red  },
        {"[green]", green},
        {"[blue]",  blue }
    };
    for (const auto& [section, table] : parts) {
        writeLutFileHeader(kEmptyLine);
        writeLutFileHeader(section);
        writeLutFileHeader(kEmptyLine);
        writeTable(*table);
    }
    return writeResult();
}

int Fg_LutFileParser::getLutFromFile(const char* path, KneeLookupTable_s* red, KneeLookupTable_s* green,
                                     KneeLookupTable_s* blue) {
    int result = getLutFromFile(path, red, "[red]");
    if (result == FG_OK) result = getLutFromFile(path, green, "[green]");
    if (result == FG_OK) result = getLutFromFile(path, blue, "[blue]");
    return result;
}

// ---- Integer arrays

int Fg_LutFileParser::saveMatrixToFile(const char* path, const char* header, const int* values, int count) {
    if (!open(path, "w")) return FG_ERROR;
    writeLutFileHeader(header);
    writeIntKey(kCountKey, count, kKeySeparator);
    for (int i = 0; i < count; ++i) writeIntInt(i, values[i], kTableSeparator);
    return writeResult();
}

int Fg_LutFileParser::getMatrixFromFile(const char* path, int* values, int capacity) {
    if (!open(path, "r+")) return FG_ERROR;
    int count = 0;
    std::ignore = parseIntKey(kCountKey, &count, kKeySeparators);  // a missing count reads as 0
    if (count > capacity) return FG_ERROR;
    return parseIntInt(values, count, kTableSeparator);
}
