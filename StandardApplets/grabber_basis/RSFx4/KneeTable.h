#pragma once

#include "fabrix/lookup_tables.h"

/// A knee lookup table that owns its values; it has none at first. Neither copied nor moved.
class KneeTable {
public:
    KneeTable() = default;
    KneeTable(const KneeTable&) = delete;
    KneeTable& operator=(const KneeTable&) = delete;
    ~KneeTable() { delete[] mRecord.value; }

    /// Becomes a copy of \p other, which has `nrOfElements` values.
    /// \return false without memory for it; the table is as it was then
    [[nodiscard]] bool install(const KneeLookupTable_s& other);
    /// Becomes the straight line from 0 to 1.
    void installLine(unsigned id);

    /// The table with its values; what replaces them must come from new[].
    [[nodiscard]] KneeLookupTable_s& record() { return mRecord; }
    [[nodiscard]] const KneeLookupTable_s& record() const { return mRecord; }

private:
    KneeLookupTable_s mRecord{};
};
