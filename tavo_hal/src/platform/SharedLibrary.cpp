#include "tavo_hal/src/platform/SharedLibrary.h"

#include "tavo_hal/src/platform/InstallationDirectory.h"

namespace tavo::platform {

LibraryLoad::LibraryLoad(const char* name) {
    const std::optional<std::string> directory = installationDirectory();
    if (!directory) return;
    path = *directory + "/lib/lib" + name + ".so";
    handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle != nullptr) return;
    const char* text = dlerror();
    lastErrorText = text != nullptr ? text : "";
}

LibraryLoad::~LibraryLoad() {
    if (closesAgain && handle != nullptr) dlclose(handle);
}

}  // namespace tavo::platform
