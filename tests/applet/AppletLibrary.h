#pragma once

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "fabrix/applet.h"
#include "fabrix/haprt.h"
#include "fabrix/tavo_hw.h"
#include "tests/TemporaryFolder.h"

inline const std::filesystem::path kStage = QUILLON_STAGE;
inline const std::filesystem::path kStubs = QUILLON_STUBS;
inline const std::filesystem::path kStagedApplet = kStage / "Hardware Applets" / "fabrixIV" / "libQuillon.so";

/// An open shared library, closed with the test.
class Library {
public:
    explicit Library(const std::filesystem::path& path) : mHandle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (mHandle == nullptr) ADD_FAILURE() << dlerror();
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (mHandle != nullptr) dlclose(mHandle);
    }

    /// \return the function \p name, whose type is \p Function; a missing one fails the test
    template <class Function>
    Function* function(const char* name) const {
        void* const address = mHandle == nullptr ? nullptr : dlsym(mHandle, name);
        if (address == nullptr) ADD_FAILURE() << name << " is missing";
        return std::bit_cast<Function*>(address);
    }

private:
    void* mHandle;
};

/// The functions of an applet library that most tests call.
struct AppletFunctions {
    const Library& library;

    decltype(::Std_entry)* Std_entry = library.function<decltype(::Std_entry)>("Std_entry");
    decltype(::Info)* Info = library.function<decltype(::Info)>("Info");
    decltype(::Fg_FreeGrabber)* Fg_FreeGrabber = library.function<decltype(::Fg_FreeGrabber)>("Fg_FreeGrabber");
    decltype(::SHW_OpenLib)* SHW_OpenLib = library.function<decltype(::SHW_OpenLib)>("SHW_OpenLib");
    decltype(::HAPRT_OpenLib)* HAPRT_OpenLib = library.function<decltype(::HAPRT_OpenLib)>("HAPRT_OpenLib");
};

/// Sets an environment variable, which the test program itself leaves unset; null unsets it, as does the end.
class Variable {
public:
    Variable(const char* name, const char* value) : mName(name) { set(value); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(nullptr); }
    void set(const char* value) const { value == nullptr ? unsetenv(mName) : setenv(mName, value, 1); }

private:
    const char* mName;
};

/// A folder that goes with the test, for installation trees. Libraries are copied into it: a copy has a state of
/// its own, a link would not.
class Installation {
public:
    const std::filesystem::path& root() const { return mFolder.path(); }
    /// Copies the applet to \p place below the root. \return its path
    std::filesystem::path addApplet(const std::filesystem::path& place = "Hardware Applets/fabrixIV/libQuillon.so") {
        return copy(kStagedApplet, place);
    }
    /// Copies a stub of the build to the place of a runtime library. \return its path
    std::filesystem::path addStub(const std::string& stub, const std::string& library,
                                  const std::filesystem::path& below = "") {
        return copy(kStubs / ("lib" + stub + ".so"), below / "lib" / ("lib" + library + ".so"));
    }
    /// Both recording stubs.
    void addStubs(const std::filesystem::path& below = "") {
        addStub("stub", "tavo_hw", below);
        addStub("stub", "haprt", below);
    }
    std::filesystem::path copy(const std::filesystem::path& from, const std::filesystem::path& place) {
        const std::filesystem::path target = mFolder / place;
        std::filesystem::create_directories(target.parent_path());
        std::filesystem::remove(target);
        std::filesystem::copy_file(from, target);
        return target;
    }

private:
    TemporaryFolder mFolder;
};

/// The test's side of a stub library; the applet gets the same copy, because it opens the same file.
class Stub {
public:
    explicit Stub(const std::filesystem::path& path) : mLibrary(path) {}

    void answer(const char* operation, int64_t value) const {
        mLibrary.function<void(const char*, int64_t)>("stub_answer")(operation, value);
    }
    /// \return the calls since this was last called
    std::vector<std::string> takeCalls() const {
        std::istringstream text(mLibrary.function<const char*()>("stub_calls")());
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        mLibrary.function<void()>("stub_clear")();
        return lines;
    }

private:
    Library mLibrary;
};

/// A board's handle with a number for an address.
inline FgDevice* device(uintptr_t number = 0x1001) { return reinterpret_cast<FgDevice*>(number); }
