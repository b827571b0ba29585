#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "host/AppletLibrary.h"

namespace quillon::host {

/// A board that is open with an applet. Owns the board device and the applet's grabber; the applet library is
/// borrowed and must outlive it. One thread at a time may use it, except where Acquisition says more.
///
/// Reads and writes answer with the applet's result codes. Ports are 0 and 1.
class Grabber {
public:
    /// Opens the board: loads the design, configures the board and sets every parameter to its default.
    /// \param device board device handle of the hardware-access library, borrowed; null stands for board 0
    /// \throws HostError with the applet's code when the board or the design refuses
    explicit Grabber(const AppletLibrary& applet, FgDevice* device = nullptr);
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;
    ~Grabber();

    [[nodiscard]] int read(int id, int32_t& value, int port = 0) const;
    [[nodiscard]] int read(int id, double& value, int port = 0) const;
    /// Reads a text. Where the parameter answers questions about a name, \p value holds the name on entry (at most
    /// 511 characters, else FG_INVALID_ARGUMENT).
    [[nodiscard]] int read(int id, std::string& value, int port = 0) const;

    [[nodiscard]] int write(int id, int32_t value, int port = 0);
    [[nodiscard]] int write(int id, double value, int port = 0);
    [[nodiscard]] int write(int id, const std::string& value, int port = 0);

    /// Smallest and largest value allowed now; the type must be the parameter's own.
    [[nodiscard]] int limits(int id, int32_t& minimum, int32_t& maximum, int port = 0) const;
    [[nodiscard]] int limits(int id, double& minimum, double& maximum, int port = 0) const;
    /// \return the access bits (1 readable, 2 writable, 4 also while an acquisition runs), or a negative code
    [[nodiscard]] int access(int id, int port = 0) const;

    /// Tells how many bytes the parameter's limits take: 4 for integers and enumerations, 8 for doubles, 0 when it
    /// has no limits.
    size_t limitWidth(int id, int port = 0) const;

    /// Saves the parameters of both ports to a configuration file. Its name must contain ".mcf", and an older file is
    /// lost even when the write fails.
    [[nodiscard]] int saveConfig(const std::filesystem::path& file) const;
    /// Loads a configuration file without any check of its values. A file that is refused changes nothing.
    [[nodiscard]] int loadConfig(const std::filesystem::path& file);
    /// Describes the parameters of a port as a GenICam GenApi document.
    [[nodiscard]] int describe(std::string& document, int port = 0) const;

    int lastError() const;
    int appletId() const;
    /// \return the name that the loaded design gives itself; empty when it has none
    std::string designName() const;

    const AppletFunctions& functions() const { return mApplet.functions(); }
    /// The grabber handle for the exported functions; borrowed.
    Fg_Struct* handle() const { return &mHandle; }
    /// The board device for the hardware-access operations; borrowed.
    FgDevice* device() const { return mDevice; }

private:
    /// Room for any value that a read may write, texts included.
    using ValueBuffer = std::array<std::byte, 1024>;

    int readRaw(unsigned id, ValueBuffer& buffer, int port, FgParamTypes type) const;
    template <class T>
    int readPlain(unsigned id, T& value, int port) const;

    const AppletLibrary& mApplet;
    std::array<std::byte, 64> mDeviceToken{};  ///< its address is the device handle of board 0
    FgDevice* const mDevice;
    mutable Fg_Struct mHandle{};  ///< the exported functions take it without const
};

}  // namespace quillon::host
