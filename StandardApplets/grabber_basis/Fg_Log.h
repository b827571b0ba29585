#pragma once

#include <cstdio>

/// Diagnostic text log of one grabber. The board access object owns it; the grabber's thread calls it.
/// Nothing in this applet opens the stream, and while it is closed no operation writes.
class Fg_Log {
public:
    /// Makes a closed log; the name is not used.
    explicit Fg_Log(const char* filename);
    Fg_Log(const Fg_Log&) = delete;
    Fg_Log& operator=(const Fg_Log&) = delete;
    ~Fg_Log();

    /// Accepts a name and leaves the log closed.
    void OpenLogFile(const char* filename);
    /// Flushes and closes an open stream.
    void CloseLogFile();

    /// Function trace: called with its qualified name by nearly every operation of master, board and image control.
    void Func(const char* name);
    void Info(const char* name);
    void Info(const char* string, int value);
    void Error(const char* name);
    void ErrorInt(const char* string, const char* key, int value);
    /// Writes \p value with twelve significant digits.
    void ErrorDouble(const char* string, const char* key, double value);
    /// Writes printf-style text as it stands, without prefix, line end or flush.
    void UsrDbg(const char* string, ...) __attribute__((format(printf, 2, 3)));
    /// \return the local time in the form of asctime, line end included; valid until the next call
    const char* GetTimestamp();
    /// Writes the header block of a log.
    void WriteWelcome();

protected:
    std::FILE* mHandleToFile = nullptr;  ///< owned; null while the log is closed
    int mLogLevel = 0;                   ///< verbosity; no operation consults it
};
