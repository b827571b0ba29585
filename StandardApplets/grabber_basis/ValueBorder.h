/// \file
/// The border between the host's untyped memory and typed values: every value is taken out and put in here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

/// Bytes that a text query writes at most, terminator included.
constexpr size_t kTextCapacity = 1024;
/// Characters of a name that a text query reads at most.
constexpr size_t kNameLength = 511;

/// \return the value of type \p Value at \p memory, which need not be aligned
template <class Value>
[[nodiscard]] Value takeValue(const void* memory) {
    static_assert(std::is_trivially_copyable_v<Value>);
    Value value;
    std::memcpy(&value, memory, sizeof(Value));
    return value;
}

/// Puts \p value into the caller's \p memory: exactly the parameter's width.
template <class Value>
void putValue(void* memory, Value value) {
    static_assert(std::is_trivially_copyable_v<Value>);
    std::memcpy(memory, &value, sizeof(Value));  // NOLINT(bugprone-sizeof-expression): a handle is a value, too
}

/// \return the text at \p memory, cut to kNameLength characters
[[nodiscard]] inline std::string takeName(const void* memory) {
    const char* text = static_cast<const char*>(memory);
    return {text, strnlen(text, kNameLength)};
}

/// Puts \p text and a terminator into the caller's \p memory, cut to kTextCapacity bytes.
inline void putText(void* memory, std::string_view text) {
    char* target = static_cast<char*>(memory);
    target[text.copy(target, kTextCapacity - 1)] = '\0';
}
