#pragma once

#include <string>

namespace simulation {

/// Result codes of the board; the control interface publishes the same values (simulation/tavo_hw/tavo_sim.h).
constexpr int kOk = 0;
constexpr int kNoDevice = -6;          // the device handle is null
constexpr int kBadArgument = -9001;    // an argument is null, out of its range, or not of this board
constexpr int kNoRegister = -9002;     // the design has no register of this handle
constexpr int kReadOnly = -9003;       // the register cannot be written
constexpr int kNotConfigured = -9004;  // the board has not been configured yet
constexpr int kBadDesign = -9005;      // the design handle is null, damaged or unloaded
constexpr int kBadSetting = -9006;     // a setting of the board was refused; its text says why
constexpr int kTimeOut = -9007;        // nothing arrived within the time-out
constexpr int kStopped = -9008;        // no transfer runs that could still bring this picture
constexpr int kBusy = -9009;           // not while a transfer runs
constexpr int kNotSupported = -9010;   // this board has no such unit
constexpr int kNoPicture = -9011;      // there is no picture in this buffer
constexpr int kOutOfMemory = -9012;    // memory could not be had
constexpr int kInternal = -9013;       // an operation failed in an unforeseen way

/// The result of an operation that explains a refusal.
struct Outcome {
    int code = kOk;
    std::string text;
};

}  // namespace simulation
