#include "StandardApplets/grabber_basis/Fg_Log.h"

#include <array>
#include <cstdarg>
#include <ctime>
#include <string>

namespace {

constexpr size_t kSeparatorHyphens = 73;
constexpr size_t kNumberCapacity = 32;

/// Writes one line and flushes; does nothing while the log is closed.
template <class... Arguments>
void writeLine(std::FILE* stream, const char* format, Arguments... arguments) {
    if (stream == nullptr) return;
    std::fprintf(stream, format, arguments...);
    std::fflush(stream);
}

}  // namespace

Fg_Log::Fg_Log(const char* /*filename*/) {}

Fg_Log::~Fg_Log() { CloseLogFile(); }

void Fg_Log::OpenLogFile(const char* /*filename*/) {}

void Fg_Log::CloseLogFile() {
    if (mHandleToFile == nullptr) return;
    std::fflush(mHandleToFile);
    std::fclose(mHandleToFile);
    mHandleToFile = nullptr;
}

void Fg_Log::Func(const char* /*name*/) {}

void Fg_Log::Info(const char* /*name*/) {}

void Fg_Log::Info(const char* string, int value) {
    writeLine(mHandleToFile, "fabrixIV::Info >> %s >> %d;\n", string, value);
}

void Fg_Log::Error(const char* name) { writeLine(mHandleToFile, "fabrixIV::Error >> %s;\n", name); }

void Fg_Log::ErrorInt(const char* string, const char* key, int value) {
    writeLine(mHandleToFile, "fabrixIV::Error >> %s >> %s >> %d;\n", string, key, value);
}

void Fg_Log::ErrorDouble(const char* string, const char* key, double value) {
    std::array<char, kNumberCapacity> number{};
    std::snprintf(number.data(), number.size(), "%.*g", 12, value);
    writeLine(mHandleToFile, "fabrixIV::Error >> %s >> %s >> %s;\n", string, key, number.data());
}

void Fg_Log::UsrDbg(const char* string, ...) {
    if (mHandleToFile == nullptr) return;
    va_list arguments;
    va_start(arguments, string);
    std::vfprintf(mHandleToFile, string, arguments);
    va_end(arguments);
}

const char* Fg_Log::GetTimestamp() {
    // The longest form of asctime takes 26 bytes for the years that tm can hold in four digits.
    static std::array<char, 64> text{};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr || asctime_r(&local, text.data()) == nullptr) text[0] = '\0';
    return text.data();
}

void Fg_Log::WriteWelcome() {
    if (mHandleToFile == nullptr) return;
    const std::string separator = std::string(kSeparatorHyphens, '-') + "\n";
    std::fputs(separator.c_str(), mHandleToFile);
    std::fputs("Quillon by Tavolane\n", mHandleToFile);
    std::fputs("Contents: Log details for fabrix Dll\n", mHandleToFile);
    std::fputs(GetTimestamp(), mHandleToFile);
    std::fputs(separator.c_str(), mHandleToFile);
}
