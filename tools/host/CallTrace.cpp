#include "host/CallTrace.h"

#include <array>
#include <charconv>
#include <cinttypes>
#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>

#include "host/AppletFunctionTable.h"

namespace quillon::host {

namespace {

constexpr size_t kLongestText = 120;
/// Identifiers with a selector have one of the two topmost bits set and are read more easily in hexadecimal.
constexpr int64_t kSelectorBit = int64_t{1} << 30;

std::FILE* traceStream = nullptr;

std::string hexadecimal(uint64_t value) {
    std::array<char, 20> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    return "0x" + std::string(digits.data(), end);
}

std::string quoted(const char* text) {
    std::string copy(text, strnlen(text, kLongestText));
    const bool isCut = text[copy.size()] != '\0';
    for (char& letter : copy) {
        if (letter == '\n') letter = ' ';
    }
    return '"' + copy + (isCut ? "...\"" : "\"");
}

template <class T>
std::string numberText(T value) {
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr};
}

template <class T>
std::string textOf(T value) {
    if constexpr (std::is_same_v<T, const char*>) {
        return value == nullptr ? "null" : quoted(value);
    } else if constexpr (std::is_pointer_v<T>) {
        if (value == nullptr) return "null";
        std::string text = hexadecimal(reinterpret_cast<uintptr_t>(value));
        using Target = std::remove_pointer_t<T>;
        if constexpr (std::is_same_v<Target, int> || std::is_same_v<Target, size_t>)
            text += " -> " + numberText(*value);
        return text;
    } else if constexpr (std::is_enum_v<T>) {
        return numberText(static_cast<std::underlying_type_t<T>>(value));
    } else {
        const auto wide = static_cast<int64_t>(value);
        if (wide <= -kSelectorBit) return hexadecimal(static_cast<uint32_t>(wide));
        return wide >= kSelectorBit ? hexadecimal(static_cast<uint64_t>(wide)) : numberText(value);
    }
}

/// What stands behind the untyped pointer of a parameter access, as far as the tag tells its type.
std::string valueBehind(const void* value, FgParamTypes type) {
    if (value == nullptr) return "";
    int32_t integer = 0;
    double number = 0;
    switch (type) {
        case FG_PARAM_TYPE_INT32_T:
            std::memcpy(&integer, value, sizeof(integer));
            return " -> " + numberText(integer);
        case FG_PARAM_TYPE_DOUBLE:
            std::memcpy(&number, value, sizeof(number));
            return " -> " + numberText(number);
        case FG_PARAM_TYPE_CHAR_PTR:
            return " -> " + quoted(static_cast<const char*>(value));
        default:
            return "";
    }
}

template <class... Arguments>
std::string argumentsText(Arguments... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + textOf(arguments)), ...);
    return text;
}

/// The two functions that read and write a parameter share this form.
std::string argumentsText(Fg_Struct* grabber, int id, void* value, int port, FgParamTypes type) {
    return textOf(grabber) + ", " + textOf(id) + ", " + textOf(value) + valueBehind(value, type) + ", " + textOf(port) +
           ", " + textOf(type);
}

template <auto Member, class Function>
struct Traced;

template <auto Member, class Result, class... Arguments>
struct Traced<Member, Result (*)(Arguments...)> {
    static inline Result (*original)(Arguments...) = nullptr;
    static inline const char* name = nullptr;

    static Result call(Arguments... arguments) {
        const Result result = original(arguments...);
        const std::string line =
            std::string("trace: ") + name + '(' + argumentsText(arguments...) + ") = " + textOf(result) + '\n';
        // A trace that cannot be written must not end what it observes.
        std::ignore = std::fputs(line.c_str(), traceStream);
        return result;
    }
};

template <auto Member>
void trace(AppletFunctions& functions, const AppletFunctionRow<Member>& row) {
    using Function = std::remove_reference_t<decltype(functions.*Member)>;
    using Wrapper = Traced<Member, Function>;
    Wrapper::original = functions.*Member;
    Wrapper::name = row.name;
    functions.*Member = &Wrapper::call;
}

}  // namespace

void traceFunctions(AppletFunctions& functions, std::FILE* stream) {
    traceStream = stream;
    std::apply([&](const auto&... rows) { (trace(functions, rows), ...); }, kAppletFunctions);
}

}  // namespace quillon::host
