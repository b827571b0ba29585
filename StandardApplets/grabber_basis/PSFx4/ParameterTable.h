/// \file
/// Parameters are data: a parameter side shows its parameters, flags and groups as tables of these rows, and the
/// functions below publish a table through the registry.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"

class Fx3ParameterHeader;

/// One published parameter.
struct ParameterRow {
    int id;
    FX3ParamType type;
    const char* defineName;   ///< FG_ name
    const char* displayName;  ///< name that users see
    const char* unit;         ///< unit label or null
    const char* description;  ///< text of FG_PARAM_DESCR; null leaves the description empty
};

/// The flags of one parameter, the same on both ports.
struct FlagRow {
    int id;
    int access;         ///< access bits
    int range;          ///< attribute for the information tree
    int visibility;     ///< attribute for the information tree
    int inConfigFiles;  ///< 1 = belongs into configuration files
};

/// Access bits in common use.
constexpr int kNoAccess = 0;
constexpr int kReadOnly = kReadable;
constexpr int kReadWrite = kReadable | kWritable;
constexpr int kWriteAlways = kWritable | kWritableWhileAcquiring;
constexpr int kReadWriteAlways = kReadable | kWriteAlways;

/// \return whether no two rows of a table have the same identifier
template <class Row, size_t N>
constexpr bool idsAreUnique(const std::array<Row, N>& rows) {
    for (size_t i = 0; i < N; ++i) {
        for (size_t k = i + 1; k < N; ++k) {
            if (rows[i].id == rows[k].id) return false;
        }
    }
    return true;
}

/// \return whether a table has a row for \p id
template <class Row>
constexpr bool hasRow(std::span<const Row> rows, int id) {
    return std::any_of(rows.begin(), rows.end(), [id](const Row& row) { return row.id == id; });
}

/// Creates the record of a parameter; a second one under a known identifier is dropped.
void createParameter(RSMaster& owner, const ParameterRow& row);
/// Creates the records of a table, in its order.
void createParameters(RSMaster& owner, std::span<const ParameterRow> rows);
/// Attaches the description texts of a table.
void publishDescriptions(Fx3ParameterHeader& header, std::span<const ParameterRow> rows);
/// Sets the flags of a table on a port.
void publishFlags(Fx3ParameterHeader& header, unsigned int port, std::span<const FlagRow> rows);
/// Creates a group, at the top level for a null \p parent, and places the parameters into it.
/// \return the group; null once the port's tree is complete, and nothing is placed then
RegisterInfo* publishGroup(Fx3ParameterHeader& header, unsigned int port, RegisterInfo* parent, const char* name,
                           std::span<const int> ids);
