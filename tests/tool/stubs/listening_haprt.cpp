// Stands before the real library, which LISTENING_HAPRT names: appends the name of each register that is looked up to
// the file LISTENING_LOG, and knows none of the name LISTENING_UNKNOWN.
#include <dlfcn.h>

#include <bit>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "fabrix/haprt.h"

namespace {

template <class Function>
Function* real(const char* name) {
    static void* const library = dlopen(std::getenv("LISTENING_HAPRT"), RTLD_NOW | RTLD_LOCAL);
    return std::bit_cast<Function*>(dlsym(library, name));
}

}  // namespace

extern "C" {

#define HapGetRegisterByName forwardedGetRegisterByName
int HapGetRegisterByName(fpga_design* design, const char* name);
#define FABRIX_HAP(result, name, parameters, arguments) \
    FABRIX_EXPORT result name parameters { return real<decltype(name)>(#name) arguments; }
#include "fabrix/runtime_operations.inc"
#undef HapGetRegisterByName

FABRIX_EXPORT int HapGetRegisterByName(fpga_design* design, const char* name) {
    if (const char* log = std::getenv("LISTENING_LOG")) std::ofstream(log, std::ios::app) << "{\"" << name << "\"}\n";
    const char* unknown = std::getenv("LISTENING_UNKNOWN");
    if (unknown != nullptr && std::strcmp(unknown, name) == 0) return 0;
    return real<decltype(HapGetRegisterByName)>("HapGetRegisterByName")(design, name);
}

}  // extern "C"
