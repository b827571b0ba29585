#pragma once

#include <stdexcept>
#include <string>

namespace quillon::host {

/// What the host library throws when something cannot come into being: a library that does not open, a board that
/// refuses, memory that cannot be had, an acquisition that does not start. Calls on what exists answer with result
/// codes instead.
class HostError : public std::runtime_error {
public:
    /// \param code result code of the applet, or 0 when the applet was not asked
    /// \param text a whole sentence for a person, without a full stop
    HostError(int code, const std::string& text) : std::runtime_error(text), mCode(code) {}

    [[nodiscard]] int code() const noexcept { return mCode; }

private:
    int mCode;
};

}  // namespace quillon::host
