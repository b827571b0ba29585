// The exported operations of the applet runtime library: a thin layer over DesignLoader.
#include "fabrix/haprt.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "simulation/design/DesignLoader.h"
#include "simulation/support/FaultPlan.h"
#include "simulation/support/LibraryState.h"
#include "simulation/support/OperationNames.h"

namespace {

using simulation::Design;
using simulation::DesignLoader;
using simulation::RegisterInfo;
using simulation::UserInfo;

constexpr int kOk = 0;
constexpr int kFailed = -1;

const char* environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The loader, and the faults that TAVO_SIM_FAULT plans for it.
class Runtime {
public:
    Runtime() {
        std::string why;
        // A faulty plan is reported by the hardware-access library, which reads the same variable.
        const auto faults =
            simulation::FaultPlan::parse(environment("TAVO_SIM_FAULT"), simulation::kOperationNames, why);
        if (!faults) return;
        for (const simulation::Fault& fault : *faults) {
            if (fault.operation.starts_with("Hap")) mFaults.add(fault);
        }
    }

    [[nodiscard]] DesignLoader& loader() { return mLoader; }
    [[nodiscard]] simulation::FaultPlan& faults() { return mFaults; }
    [[nodiscard]] bool isIdle() const { return mLoader.isIdle(); }

private:
    DesignLoader mLoader;
    simulation::FaultPlan mFaults;
};

constinit simulation::LibraryState<Runtime> gRuntime;

[[gnu::destructor]] void releaseRuntime() { gRuntime.release(); }

/// What an operation answers instead of a result when the fault plan says so: its code, or null.
template <class Result>
Result failureOf(int code) {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return static_cast<Result>(code);
    }
}

/// Runs \p work unless a fault is planned for \p operation; no exception leaves the library.
template <class Result, class Work>
Result run(std::string_view operation, Work&& work) {
    try {
        const int code = gRuntime.get().faults().nextCall(operation);
        return code != 0 ? failureOf<Result>(code) : work(gRuntime.get().loader());
    } catch (const std::exception&) {
        return failureOf<Result>(kFailed);
    }
}

const RegisterInfo* findRegister(const DesignLoader& loader, const fpga_design* handle, int number) {
    const Design* const design = loader.find(handle);
    if (design == nullptr || number < 1 || static_cast<size_t>(number) > design->registers.size()) return nullptr;
    return &design->registers[static_cast<size_t>(number) - 1];
}

/// A handle that a host passed as a pointer-wide number: some operations take nothing else.
fpga_design* asDesign(uintptr_t argument) {
    return reinterpret_cast<fpga_design*>(argument);  // NOLINT(performance-no-int-to-ptr) it was a pointer
}

}  // namespace

extern "C" {

fpga_design* HapLoadHapFileWithType(const char* fileName, int boardType, int /*flag*/) {
    return run<fpga_design*>(__func__, [&](DesignLoader& loader) -> fpga_design* {
        if (fileName == nullptr || *fileName == '\0') return nullptr;
        return loader.loadFile(fileName, environment("TAVO_SIM_DESIGN_PATH"), boardType);
    });
}

fpga_design* HapLoadDesignFromBuffer(const void* data, size_t length, int /*flag*/) {
    return run<fpga_design*>(__func__, [&](DesignLoader& loader) -> fpga_design* {
        if (data == nullptr) return nullptr;
        return loader.load({static_cast<const uint8_t*>(data), length}, DesignLoader::kAnyBoard);
    });
}

int HapUnloadHapFile(fpga_design* design) {
    return run<int>(__func__, [&](DesignLoader& loader) { return loader.unload(design) ? kOk : kFailed; });
}

int HapGetNrOfRegister(fpga_design* design) {
    return run<int>(__func__, [&](const DesignLoader& loader) {
        const Design* const found = loader.find(design);
        return found == nullptr ? kFailed : static_cast<int>(found->registers.size());
    });
}

const char* HapGetRegisterName(fpga_design* design, int number) {
    return run<const char*>(__func__, [&](const DesignLoader& loader) {
        const RegisterInfo* const info = findRegister(loader, design, number);
        return info == nullptr ? nullptr : info->name.c_str();
    });
}

int HapGetRegisterDirection(fpga_design* design, int number) {
    return run<int>(__func__, [&](const DesignLoader& loader) {
        const RegisterInfo* const info = findRegister(loader, design, number);
        return info == nullptr ? 0 : static_cast<int>(info->direction);
    });
}

int HapGetRegisterByName(fpga_design* design, const char* name) {
    return run<int>(__func__, [&](const DesignLoader& loader) {
        const Design* const found = loader.find(design);
        if (found == nullptr || name == nullptr) return 0;
        const auto row = std::find_if(found->registers.begin(), found->registers.end(),
                                      [&](const RegisterInfo& info) { return info.name == name; });
        return row == found->registers.end() ? 0 : static_cast<int>(row - found->registers.begin()) + 1;
    });
}

int HapGetRegisterBitRange(fpga_design* design, int number) {
    return run<int>(__func__, [&](const DesignLoader& loader) {
        const RegisterInfo* const info = findRegister(loader, design, number);
        return info == nullptr ? 0 : static_cast<int>(info->width);
    });
}

intptr_t HapGetRegisterInitValue(uintptr_t design, uintptr_t number, uintptr_t, uintptr_t, uintptr_t, uintptr_t,
                                 uintptr_t, uintptr_t) {
    return run<intptr_t>(__func__, [&](const DesignLoader& loader) -> intptr_t {
        const RegisterInfo* const info = findRegister(loader, asDesign(design), static_cast<int>(number));
        return info == nullptr ? 0 : static_cast<intptr_t>(info->initialValue);
    });
}

intptr_t HapGetNrOfUserInfos(uintptr_t design, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t,
                             uintptr_t) {
    return run<intptr_t>(__func__, [&](const DesignLoader& loader) -> intptr_t {
        const Design* const found = loader.find(asDesign(design));
        return found == nullptr ? kFailed : static_cast<intptr_t>(found->userInfos.size());
    });
}

const char* HapGetUserInfoByName(fpga_design* design, const char* name) {
    return run<const char*>(__func__, [&](const DesignLoader& loader) -> const char* {
        const Design* const found = loader.find(design);
        if (found == nullptr || name == nullptr) return nullptr;
        const auto row = std::find_if(found->userInfos.begin(), found->userInfos.end(),
                                      [&](const UserInfo& info) { return info.name == name; });
        return row == found->userInfos.end() ? nullptr : row->value.c_str();
    });
}
}
