#include "tests/faults/FaultyRuntime.h"

#include <algorithm>
#include <stdexcept>

#include "haprt/src/haprt_loader.h"
#include "tavo_hal/src/hw/tavo_hw_loader.h"
#include "tests/core/DesignRegisters.h"

namespace {

FaultyRuntime* gCurrent = nullptr;

char gDevice;
char gDesign;
char gMemory;

int registerCount() { return static_cast<int>(designRegisters().size()); }

bool isRegister(int handle) { return handle >= 1 && handle <= registerCount(); }

const DesignRegister& rowOf(int handle) { return designRegisters()[static_cast<size_t>(handle - 1)]; }

}  // namespace

FaultyRuntime::FaultyRuntime() {
    // Read before anything fails or is counted.
    if (designRegisters().size() >= mValues.size()) throw std::length_error("the design has more registers than this");
    gCurrent = this;
    fillTables();
}

FaultyRuntime::~FaultyRuntime() {
    clearTables();
    gCurrent = nullptr;
}

void FaultyRuntime::clearTables() {
#define FABRIX_TAVO(result, name, parameters, arguments) m_P##name = nullptr;
#define FABRIX_HAP(result, name, parameters, arguments) m_P##name = nullptr;
#include "fabrix/runtime_operations.inc"
}

void FaultyRuntime::fillTables() {
    m_PTavoConfigureFpga = [](FgDevice*, fpga_design* design) -> int {
        return gCurrent->fails(Operation::kConfigure) || design == nullptr ? kFault : 0;
    };
    m_PTavoRegisterWrite = [](FgDevice*, int handle, uint64_t value) -> int {
        if (gCurrent->fails(Operation::kRegisterWrite)) return kFault;
        if (!isRegister(handle) || rowOf(handle).direction != 1) return kNoRegister;
        gCurrent->mValues[static_cast<size_t>(handle)] = value;
        return 0;
    };
    m_PTavoRegisterRead = [](FgDevice*, int handle, uint64_t* value) -> int {
        if (gCurrent->fails(Operation::kRegisterRead)) return kFault;
        if (!isRegister(handle)) return kNoRegister;
        *value = gCurrent->mValues[static_cast<size_t>(handle)];
        return 0;
    };
    m_PTavoDmaStartRead = [](FgDevice*, int, frameindex_t, size_t, dma_mem*, int, frameindex_t, int, int) -> int {
        if (gCurrent->fails(Operation::kDmaStartRead)) return kFault;
        const std::lock_guard lock(gCurrent->mMutex);
        gCurrent->mIsRunning = true;
        return 0;
    };
    m_PTavoDmaStop = [](FgDevice*, int, int, int) -> int {
        if (gCurrent->fails(Operation::kDmaStop)) return kFault;
        const std::lock_guard lock(gCurrent->mMutex);
        gCurrent->mIsRunning = false;
        gCurrent->mChanged.notify_all();
        return 0;
    };
    m_PTavoDmaTestBuffer = [](FgDevice*, int, dma_mem*) -> frameindex_t {
        return gCurrent->fails(Operation::kDmaTestBuffer) ? kFault : 3;
    };
    m_PTavoDmaWaitForBuffer = [](FgDevice*, int, frameindex_t picture, dma_mem*, int timeout) -> frameindex_t {
        if (gCurrent->fails(Operation::kDmaWaitForBuffer)) return kFault;
        if (timeout == 0) return picture;
        std::unique_lock lock(gCurrent->mMutex);
        ++gCurrent->mWaiters;
        gCurrent->mChanged.wait(lock, [] { return !gCurrent->mIsRunning; });
        --gCurrent->mWaiters;
        return kStopped;
    };
    m_PTavoGetDmaTag = [](FgDevice*, dma_mem*, frameindex_t) -> int {
        return gCurrent->fails(Operation::kDmaTag) ? kFault : 9;
    };
    m_PTavoGetDmaLength = [](FgDevice*, dma_mem*, frameindex_t) -> size_t {
        return gCurrent->fails(Operation::kDmaLength) ? 0 : 100;
    };
    m_PTavoGetCameraStatusExtended = [](FgDevice*, unsigned) -> int {
        return gCurrent->fails(Operation::kCameraStatus) ? kFault : 1;
    };

    m_PHapLoadDesignFromBuffer = [](const void*, size_t, int) -> fpga_design* {
        if (gCurrent->fails(Operation::kLoadDesign)) return nullptr;
        ++gCurrent->mDesignsOpen;
        return reinterpret_cast<fpga_design*>(&gDesign);
    };
    m_PHapLoadHapFileWithType = [](const char*, int, int) -> fpga_design* { return nullptr; };
    m_PHapUnloadHapFile = [](fpga_design*) -> int {
        --gCurrent->mDesignsOpen;
        ++gCurrent->mUnloads;
        return gCurrent->fails(Operation::kUnloadDesign) ? kFault : 0;
    };
    m_PHapGetRegisterByName = [](fpga_design*, const char* name) -> int {
        if (gCurrent->fails(Operation::kRegisterByName)) return 0;
        const auto& rows = designRegisters();
        const auto found = std::find_if(rows.begin(), rows.end(), [name](const auto& row) { return row.name == name; });
        return found == rows.end() ? 0 : static_cast<int>(found - rows.begin()) + 1;
    };
    m_PHapGetRegisterBitRange = [](fpga_design*, int handle) -> int {
        return gCurrent->fails(Operation::kBitRange) || !isRegister(handle) ? 0 : rowOf(handle).width;
    };
    m_PHapGetRegisterName = [](fpga_design*, int handle) -> const char* {
        return gCurrent->fails(Operation::kRegisterName) || !isRegister(handle) ? nullptr : rowOf(handle).name.c_str();
    };
    m_PHapGetRegisterDirection = [](fpga_design*, int handle) -> int {
        return gCurrent->fails(Operation::kDirection) || !isRegister(handle) ? 0 : rowOf(handle).direction;
    };
    m_PHapGetNrOfRegister = [](fpga_design*) -> int {
        return gCurrent->fails(Operation::kRegisterCount) ? kFault : registerCount();
    };
    m_PHapGetUserInfoByName = [](fpga_design*, const char*) -> const char* {
        return gCurrent->fails(Operation::kUserInfo) ? nullptr : "FaultyDesign";
    };
}

bool FaultyRuntime::fails(Operation operation) {
    if (mOperation != static_cast<int>(operation)) return false;
    if (--mCallsLeft != 0) return false;
    mHasFailed = true;
    return true;
}

void FaultyRuntime::plan(Operation operation, int n) {
    mHasFailed = false;
    mCallsLeft = n;
    mOperation = static_cast<int>(operation);
}

bool FaultyRuntime::takeFault() {
    mOperation = -1;
    return mHasFailed.exchange(false);
}

int FaultyRuntime::waiters() {
    const std::lock_guard lock(mMutex);
    return mWaiters;
}

FgDevice* FaultyRuntime::device() { return reinterpret_cast<FgDevice*>(&gDevice); }
dma_mem* FaultyRuntime::memory() { return reinterpret_cast<dma_mem*>(&gMemory); }
