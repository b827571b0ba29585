#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <type_traits>

#include "fabrix/types.h"

/// What a stub runtime library does with every call: it notes a line "NAME ARGUMENT...", pointers in hexadecimal,
/// numbers in decimal, texts as they are; and it answers what the test has set, else 0 or null.
class Recorder {
public:
    template <class Result, class... Arguments>
    Result call(const char* name, const std::tuple<Arguments...>& arguments) {
        std::string line = name;
        std::apply([&](const auto&... argument) { ((line += " " + textOf(argument)), ...); }, arguments);
        const std::lock_guard lock(mMutex);
        mCalls += line + "\n";
        const auto found = mAnswers.find(name);
        const int64_t answer = found == mAnswers.end() ? 0 : found->second;
        if constexpr (std::is_pointer_v<Result>) {
            return reinterpret_cast<Result>(static_cast<intptr_t>(answer));
        } else {
            return static_cast<Result>(answer);
        }
    }

    /// \return the calls since the last clear(), one a line; valid until the next call of it
    const char* calls() {
        const std::lock_guard lock(mMutex);
        mShown = mCalls;
        return mShown.c_str();
    }
    void clear() {
        const std::lock_guard lock(mMutex);
        mCalls.clear();
    }
    void answer(const char* name, int64_t value) {
        const std::lock_guard lock(mMutex);
        mAnswers[name] = value;
    }

private:
    template <class Value>
    static std::string textOf(const Value& value) {
        if constexpr (std::is_same_v<Value, const char*>) {
            return value == nullptr ? "null" : value;
        } else if constexpr (std::is_pointer_v<Value>) {
            static constexpr char kDigits[] = "0123456789abcdef";
            std::string digits;
            for (auto rest = reinterpret_cast<uintptr_t>(value); rest != 0; rest /= 16) {
                digits.insert(digits.begin(), kDigits[rest % 16]);
            }
            return digits.empty() ? "null" : "0x" + digits;
        } else {
            return std::to_string(value);
        }
    }

    std::mutex mMutex;
    std::string mCalls;
    std::string mShown;
    std::map<std::string, int64_t> mAnswers;
};

inline Recorder& recorder() {
    static Recorder instance;
    return instance;
}

extern "C" {

/// \name The test's side of a stub
/// @{
FABRIX_EXPORT const char* stub_calls();
FABRIX_EXPORT void stub_clear();
FABRIX_EXPORT void stub_answer(const char* operation, int64_t value);
/// @}
}
