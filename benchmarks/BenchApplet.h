#pragma once

#include <dlfcn.h>

#include <array>
#include <bit>
#include <cstddef>
#include <stdexcept>
#include <string>

#include "fabrix/applet.h"
#include "fabrix/tavo_hw.h"

namespace bench {

/// An applet library, opened for the life of the process, whose exported functions are called without anything
/// between.
class BenchApplet {
public:
    /// \throws std::runtime_error when the library does not open
    explicit BenchApplet(const std::string& path);

    /// \param name name of the exported function
    /// \throws std::runtime_error when there is none
    template <class Function>
    [[nodiscard]] Function function(const char* name) const {
        void* address = dlsym(mHandle, name);
        if (address == nullptr) throw std::runtime_error(std::string("the applet has no function ") + name);
        return std::bit_cast<Function>(address);
    }

private:
    void* mHandle;
};

/// The applet over the software board.
[[nodiscard]] const BenchApplet& boardApplet();

/// The applet over a hardware-access library in which nothing happens: a copy with a state of its own.
[[nodiscard]] const BenchApplet& emptyApplet();

/// A grabber that is open. The applet is borrowed.
class BenchGrabber {
public:
    /// \throws std::runtime_error when the board does not open
    explicit BenchGrabber(const BenchApplet& applet);
    BenchGrabber(const BenchGrabber&) = delete;
    BenchGrabber& operator=(const BenchGrabber&) = delete;
    ~BenchGrabber();

    [[nodiscard]] Fg_Struct* handle() { return &mHandle; }
    [[nodiscard]] FgDevice* device();

private:
    const BenchApplet& mApplet;
    std::array<std::byte, 64> mToken{};  // its address is the device handle of board 0
    Fg_Struct mHandle{};
};

}  // namespace bench
