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

/// What stands in the tables.
struct FaultyRuntime::Functions {
    static bool fails(Operation operation) { return gCurrent->fails(operation); }

    static int configure(FgDevice*, fpga_design* design) {
        return fails(Operation::kConfigure) || design == nullptr ? kFault : 0;
    }
    static int write(FgDevice*, int handle, uint64_t value) {
        if (fails(Operation::kRegisterWrite)) return kFault;
        if (!isRegister(handle) || rowOf(handle).direction != 1) return kNoRegister;
        gCurrent->mValues[static_cast<size_t>(handle)] = value;
        return 0;
    }
    static int read(FgDevice*, int handle, uint64_t* value) {
        if (fails(Operation::kRegisterRead)) return kFault;
        if (!isRegister(handle)) return kNoRegister;
        *value = gCurrent->mValues[static_cast<size_t>(handle)];
        return 0;
    }
    static int start(FgDevice*, int, frameindex_t, size_t, dma_mem*, int, frameindex_t, int, int) {
        if (fails(Operation::kDmaStartRead)) return kFault;
        const std::lock_guard lock(gCurrent->mMutex);
        gCurrent->mIsRunning = true;
        return 0;
    }
    static int stop(FgDevice*, int, int, int) {
        if (fails(Operation::kDmaStop)) return kFault;
        const std::lock_guard lock(gCurrent->mMutex);
        gCurrent->mIsRunning = false;
        gCurrent->mChanged.notify_all();
        return 0;
    }
    static frameindex_t test(FgDevice*, int, dma_mem*) { return fails(Operation::kDmaTestBuffer) ? kFault : 3; }
    static frameindex_t wait(FgDevice*, int, frameindex_t picture, dma_mem*, int timeout) {
        if (fails(Operation::kDmaWaitForBuffer)) return kFault;
        if (timeout == 0) return picture;
        std::unique_lock lock(gCurrent->mMutex);
        ++gCurrent->mWaiters;
        gCurrent->mChanged.wait(lock, [] { return !gCurrent->mIsRunning; });
        --gCurrent->mWaiters;
        return kStopped;
    }
    static int tag(FgDevice*, dma_mem*, frameindex_t) { return fails(Operation::kDmaTag) ? kFault : 9; }
    static size_t length(FgDevice*, dma_mem*, frameindex_t) { return fails(Operation::kDmaLength) ? 0 : 100; }
    static int cameraStatus(FgDevice*, unsigned) { return fails(Operation::kCameraStatus) ? kFault : 1; }

    static fpga_design* load(const void*, size_t, int) {
        if (fails(Operation::kLoadDesign)) return nullptr;
        ++gCurrent->mDesignsOpen;
        return reinterpret_cast<fpga_design*>(&gDesign);
    }
    static fpga_design* loadFile(const char*, int, int) { return nullptr; }
    static int unload(fpga_design*) {
        --gCurrent->mDesignsOpen;
        ++gCurrent->mUnloads;
        return fails(Operation::kUnloadDesign) ? kFault : 0;
    }
    static int byName(fpga_design*, const char* name) {
        if (fails(Operation::kRegisterByName)) return 0;
        const auto& rows = designRegisters();
        const auto found = std::find_if(rows.begin(), rows.end(), [name](const auto& row) { return row.name == name; });
        return found == rows.end() ? 0 : static_cast<int>(found - rows.begin()) + 1;
    }
    static int bitRange(fpga_design*, int handle) {
        return fails(Operation::kBitRange) || !isRegister(handle) ? 0 : rowOf(handle).width;
    }
    static const char* name(fpga_design*, int handle) {
        return fails(Operation::kRegisterName) || !isRegister(handle) ? nullptr : rowOf(handle).name.c_str();
    }
    static int direction(fpga_design*, int handle) {
        return fails(Operation::kDirection) || !isRegister(handle) ? 0 : rowOf(handle).direction;
    }
    static int count(fpga_design*) { return fails(Operation::kRegisterCount) ? kFault : registerCount(); }
    static const char* userInfo(fpga_design*, const char*) {
        return fails(Operation::kUserInfo) ? nullptr : "FaultyDesign";
    }
};

FaultyRuntime::FaultyRuntime() {
    // Read before anything fails or is counted.
    if (designRegisters().size() >= mValues.size()) throw std::length_error("the design has more registers than this");
    gCurrent = this;
    install(true);
}

FaultyRuntime::~FaultyRuntime() {
    install(false);
    gCurrent = nullptr;
}

void FaultyRuntime::install(bool on) {
    m_PTavoConfigureFpga = on ? &Functions::configure : nullptr;
    m_PTavoRegisterWrite = on ? &Functions::write : nullptr;
    m_PTavoDmaStartRead = on ? &Functions::start : nullptr;
    m_PTavoDmaStop = on ? &Functions::stop : nullptr;
    m_PTavoDmaTestBuffer = on ? &Functions::test : nullptr;
    m_PTavoDmaWaitForBuffer = on ? &Functions::wait : nullptr;
    m_PTavoGetDmaTag = on ? &Functions::tag : nullptr;
    m_PTavoGetDmaLength = on ? &Functions::length : nullptr;
    m_PTavoGetCameraStatusExtended = on ? &Functions::cameraStatus : nullptr;
    m_PTavoRegisterRead = on ? &Functions::read : nullptr;
    m_PHapLoadDesignFromBuffer = on ? &Functions::load : nullptr;
    m_PHapUnloadHapFile = on ? &Functions::unload : nullptr;
    m_PHapGetRegisterByName = on ? &Functions::byName : nullptr;
    m_PHapGetRegisterBitRange = on ? &Functions::bitRange : nullptr;
    m_PHapGetRegisterName = on ? &Functions::name : nullptr;
    m_PHapGetRegisterDirection = on ? &Functions::direction : nullptr;
    m_PHapGetNrOfRegister = on ? &Functions::count : nullptr;
    m_PHapGetUserInfoByName = on ? &Functions::userInfo : nullptr;
    m_PHapLoadHapFileWithType = on ? &Functions::loadFile : nullptr;
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
