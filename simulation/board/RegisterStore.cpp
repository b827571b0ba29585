#include "simulation/board/RegisterStore.h"

#include <algorithm>

#include "simulation/board/BoardCodes.h"

namespace simulation {

namespace {

size_t indexOf(int handle) { return static_cast<size_t>(handle) - 1; }

}  // namespace

void RegisterStore::configure(const Design& design) {
    mRegisters = design.registers;
    mValues = std::vector<std::atomic<uint64_t>>(mRegisters.size());
    for (size_t i = 0; i < mRegisters.size(); ++i) mValues[i] = mRegisters[i].initialValue;
}

bool RegisterStore::has(int handle) const { return handle >= 1 && indexOf(handle) < mRegisters.size(); }

int RegisterStore::write(int handle, uint64_t value) {
    if (!has(handle)) return kNoRegister;
    const RegisterInfo& info = mRegisters[indexOf(handle)];
    if (info.direction != kDirectionWrite) return kReadOnly;
    mValues[indexOf(handle)] = maskToWidth(value, info.width);
    return kOk;
}

void RegisterStore::set(int handle, uint64_t value) {
    if (has(handle)) mValues[indexOf(handle)] = maskToWidth(value, mRegisters[indexOf(handle)].width);
}

int RegisterStore::read(int handle, uint64_t& value) const {
    if (!has(handle)) return kNoRegister;
    value = mValues[indexOf(handle)];
    return kOk;
}

int RegisterStore::find(std::string_view name) const {
    const auto row =
        std::find_if(mRegisters.begin(), mRegisters.end(), [&](const RegisterInfo& info) { return info.name == name; });
    return row == mRegisters.end() ? 0 : static_cast<int>(row - mRegisters.begin()) + 1;
}

std::string RegisterStore::nameOf(int handle) const {
    return has(handle) ? mRegisters[indexOf(handle)].name : std::string();
}

unsigned RegisterStore::widthOf(int handle) const { return has(handle) ? mRegisters[indexOf(handle)].width : 0; }

uint64_t RegisterStore::valueOf(int handle) const { return has(handle) ? mValues[indexOf(handle)].load() : 0; }

}  // namespace simulation
