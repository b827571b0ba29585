#include "StandardApplets/grabber_basis/RSFx4/KneeTable.h"

#include <algorithm>
#include <memory>
#include <new>

#include "StandardApplets/grabber_basis/RSFx4/KneeCurve.h"

bool KneeTable::install(const KneeLookupTable_s& other) {
    std::unique_ptr<double[]> copy(new (std::nothrow) double[other.nrOfElements]);
    if (copy == nullptr) return false;
    std::copy_n(other.value, other.nrOfElements, copy.get());
    delete[] mRecord.value;
    mRecord = other;
    mRecord.value = copy.release();
    mRecord.reserved = nullptr;
    return true;
}

void KneeTable::installLine(unsigned id) {
    auto line = std::make_unique<double[]>(kKneePoints);
    for (size_t i = 0; i < kKneePoints; ++i) line[i] = static_cast<double>(i) / kKneeSegments;
    delete[] mRecord.value;
    mRecord = {.value = line.release(),
               .reserved = nullptr,
               .id = id,
               .nrOfElements = static_cast<uint32_t>(kKneePoints),
               .format = kKneeFormat,
               .number = 0};
}
