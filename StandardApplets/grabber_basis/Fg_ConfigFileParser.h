#pragma once

#include <cstdint>
#include <string>

#include "StandardApplets/grabber_basis/TextFile.h"

class Fg_Log;

/// Reads and writes the syntax of configuration files: a header section and one section a port, one `KEY=value;` or
/// `KEY='text';` a line. Which values stand in a file is the registry's business.
///
/// Lives for one save or one load, on one thread; borrows the log, which may be null. Owns the open file. A parser
/// without a file finds no key and writes nothing. Every write is flushed at once.
class Fg_ConfigFileParser {
public:
    /// Opens an existing file of the right type.
    /// \param filename null leaves the parser without a file, for a save
    Fg_ConfigFileParser(Fg_Log* log, const char* filename, bool readOnly);
    Fg_ConfigFileParser(const Fg_ConfigFileParser&) = delete;
    Fg_ConfigFileParser& operator=(const Fg_ConfigFileParser&) = delete;
    ~Fg_ConfigFileParser() = default;

    /// \return whether ".mcf" occurs in the name
    [[nodiscard]] bool checkFileType(const char* fileName) const;
    /// \return whether the file can be opened for reading
    [[nodiscard]] bool checkFileExist(const char* filename) const;
    /// Creates or empties a file of the right type.
    /// \return whether it is open for writing
    [[nodiscard]] bool setSaveFile(const char* filename);
    /// \return the open file, for modules that read or write lines of their own; null without one
    [[nodiscard]] std::FILE* getFile() const;
    /// \return whether a write to the file has failed
    [[nodiscard]] bool hasWriteFailed() const;

    /// \name Writing
    /// @{
    void writeConfigFileHeader();
    /// Writes a text in single quotes.
    void writeConfigFile(const char* key, const char* value);
    void writeConfigFileValue(const char* key, const char* value);
    void writeConfigFileIntKey(const char* key, int value);
    void writeConfigFileUInt64Key(const char* key, uint64_t value);
    /// Writes at most twelve significant digits.
    void writeConfigFileDoubleKey(const char* key, double value);
    void writeConfigFilePortA();
    void writeConfigFilePortB();
    void writeConfigFileByPort(int port);
    /// @}

    /// \return the section line of a port, without a line feed
    [[nodiscard]] static std::string getPortString(int port);

    /// \name Reading
    /// A value is "Error" where its key is missing. Number forms return FG_ERROR and store nothing for a missing key
    /// and for a value that contains "Error"; the forms for a port's section also for a null key.
    /// @{
    /// Finds the first line of the file that contains \p key anywhere and has a value.
    /// \return 0 or FG_KEY_MISSING
    int parseKeyFromLine(const char* key, std::string& value);
    /// Finds the first line after \p subsection that begins with \p key and "=". Later sections are searched as well.
    /// \return 0 or FG_KEY_MISSING
    int parseKey(const char* subsection, const char* key, std::string& value);
    int parseIntKey(const char* subsection, const char* key, int* value);
    int parseUInt64Key(const char* subsection, const char* key, uint64_t* value);
    int parseDoubleKey(const char* subsection, const char* key, double* value);
    int parseKeySection(int port, const char* key, std::string& value);
    int parseIntKeySection(int port, const char* key, int* value);
    int parseUInt64KeySection(int port, const char* key, uint64_t* value);
    int parseDoubleKeySection(int port, const char* key, double* value);
    /// Searches from the header section on, whose line must end with a line feed alone.
    int parseIntKeyFromHeader(const char* key, int* value);
    static void getIntValue(const char* text, int* value);
    /// Leaves the value alone when \p text has no number.
    static void getUInt64Value(const char* text, uint64_t* value);
    static void getDoubleValue(const char* text, double* value);
    /// @}

private:
    template <class Value>
    int parseNumber(const char* subsection, const char* key, Value* value, void (*convert)(const char*, Value*));

    UniqueFile mConfigFile;
    Fg_Log* mFg_Log;
};
