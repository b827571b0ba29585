#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"

/// Finds a parameter record by its identifier: every read and write of a host begins with that. Borrows the records;
/// used by the registry alone.
class ParameterIndex {
public:
    /// Makes room for one more record.
    /// \throws std::bad_alloc, with nothing changed
    void reserve() {
        if (4 * (mCount + 1) > mSlots.size()) grow();
    }

    /// Enters a record, for which room has been made; a record of the same identifier is replaced.
    void add(Fx3Parameter* record) noexcept {
        Fx3Parameter*& slot = mSlots[slotOf(record->description.id)];
        if (slot == nullptr) ++mCount;
        slot = record;
    }

    /// \return the record, or null
    [[nodiscard]] Fx3Parameter* find(int id) const { return mSlots.empty() ? nullptr : mSlots[slotOf(id)]; }

private:
    /// \return the slot of an identifier, or the free one in which it belongs: there are always free ones
    [[nodiscard]] size_t slotOf(int id) const {
        constexpr uint32_t kSpread = 0x9E3779B1;  // 2^32 over the golden ratio: neighbours come to lie far apart
        const size_t mask = mSlots.size() - 1;
        size_t slot = (static_cast<uint32_t>(id) * kSpread >> 16) & mask;
        while (mSlots[slot] != nullptr && mSlots[slot]->description.id != id) slot = (slot + 1) & mask;
        return slot;
    }

    void grow() {
        constexpr size_t kFirstSlots = 512;  // a power of two, as are its multiples
        std::vector<Fx3Parameter*> former(mSlots.empty() ? kFirstSlots : 2 * mSlots.size(), nullptr);
        former.swap(mSlots);
        for (Fx3Parameter* record : former) {
            if (record != nullptr) mSlots[slotOf(record->description.id)] = record;
        }
    }

    std::vector<Fx3Parameter*> mSlots;
    size_t mCount = 0;
};
