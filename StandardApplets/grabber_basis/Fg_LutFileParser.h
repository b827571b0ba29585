#pragma once

#include <string>

#include "StandardApplets/grabber_basis/TextFile.h"
#include "fabrix/lookup_tables.h"

/// Reads and writes lookup-table files: text files in which every entry is one line, `index,value;`.
///
/// Owned by its user, called on one thread. Holds at most one open file; opening another closes it. Every write is
/// flushed, so a saved file is complete although it stays open. What a file contains is never an error: a missing key
/// reads as 0, entries whose line is missing keep what they held, and lines count in index order only.
class Fg_LutFileParser {
public:
    Fg_LutFileParser() = default;
    Fg_LutFileParser(const Fg_LutFileParser&) = delete;
    Fg_LutFileParser& operator=(const Fg_LutFileParser&) = delete;
    ~Fg_LutFileParser() = default;

    /// \return whether ".lut" occurs in \p path
    [[nodiscard]] static bool checkFileType(const char* path);
    /// \return whether the file can be opened for reading
    [[nodiscard]] static bool checkFileExist(const char* path);
    /// Creates or empties a file of the right type.
    /// \return whether it is open for writing
    [[nodiscard]] bool setSaveFile(const char* path);
    /// Opens an existing file of the right type.
    /// \return whether it is open
    [[nodiscard]] bool setOpenFile(const char* path, bool readOnly);

    /// \name Lines
    /// @{
    /// Writes \p text as it is.
    void writeLutFileHeader(const char* text);
    void writeLutFileValue(const char* key, const char* value, const char* separator);
    void writeIntKey(const char* key, int value, const char* separator);
    /// Writes at most twelve significant digits.
    void writeDoubleKey(const char* key, double value, const char* separator);
    void writeIntInt(int index, int value, const char* separator);
    /// Writes twelve decimals.
    void writeIntDouble(int index, double value, const char* separator);

    /// Looks for the first line of the file that contains \p key.
    /// \param value receives what follows the first separator; "Error" when there is nothing
    /// \return 0, or FG_ERROR without a value
    int parseKeyFromLine(const char* key, std::string& value, const char* separators);
    /// Store the number, 0 without one; results as above.
    int parseIntKey(const char* key, int* value, const char* separators);
    int parseDoubleKey(const char* key, double* value, const char* separators);
    /// Reads \p count table lines.
    /// \return 0
    int parseIntInt(int* values, int count, const char* separators);
    /// Reads \p count table lines from the line on that contains \p section.
    /// \return 0
    int parseIntDouble(double* values, int count, const char* separators, const char* section);
    static void getIntValue(const char* text, int* value);
    static void getDoubleValue(const char* text, double* value);
    /// @}

    /// \name Files
    /// \return 0, or FG_ERROR when the file has the wrong type or cannot be opened or written
    /// @{
    int saveLutToFile(const char* path, const LookupTable_s* table);
    /// Replaces `table->lut` by new entries, which the caller deletes with delete[]; null before the first call.
    /// \return FG_ERROR also for more entries than any table has; the table then has none
    int getLutFromFile(const char* path, LookupTable_s* table, const char* section);
    int saveLutToFile(const char* path, const KneeLookupTable_s* table, const char* section);
    /// Replaces `table->value` by `table->nrOfElements` new values, which the caller deletes with delete[].
    int getLutFromFile(const char* path, KneeLookupTable_s* table, const char* section);
    int saveLutToFile(const char* path, const KneeLookupTable_s* red, const KneeLookupTable_s* green,
                      const KneeLookupTable_s* blue);
    int getLutFromFile(const char* path, KneeLookupTable_s* red, KneeLookupTable_s* green, KneeLookupTable_s* blue);
    /// Integer arrays; the name may be any.
    int saveMatrixToFile(const char* path, const char* header, const int* values, int count);
    /// \return FG_ERROR also for a file with more than \p capacity entries; nothing is read then
    int getMatrixFromFile(const char* path, int* values, int capacity);
    /// @}

private:
    bool open(const char* path, const char* mode);
    [[nodiscard]] int writeResult() const;
    void writeTable(const KneeLookupTable_s& table);
    /// Hands the value text of each table line to \p store(index, text), in index order.
    template <class Store>
    void readTable(int count, const char* separators, const char* section, Store store);

    UniqueFile mConfigFile;
};
