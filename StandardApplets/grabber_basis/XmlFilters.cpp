#include "StandardApplets/grabber_basis/XmlFilters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct Entity {
    char character;
    std::string_view text;
};
// clang-format off
constexpr std::array kEntities{
    Entity{'&', "&amp;"}, Entity{'<', "&lt;"}, Entity{'>', "&gt;"}, Entity{'"', "&quot;"}, Entity{'\'', "&apos;"},
};
// clang-format on

constexpr bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isNameCharacter(char c) { return isLetter(c) || isDigit(c) || c == '_'; }
constexpr bool isReserved(char c) { return c == '&' || c == '<' || c == '>' || c == '"' || c == '\''; }

}  // namespace

std::string xmlNameFilter(const std::string& text) {
    std::string name = text;
    if (!name.empty() && !isLetter(name.front())) name.front() = ' ';  // goes with all that no name has
    std::erase_if(name, [](char c) { return !isNameCharacter(c); });
    return name;
}

std::string xmlStringFilter(const std::string& text) {
    if (std::none_of(text.begin(), text.end(), isReserved)) return text;
    std::string filtered;
    for (const char character : text) {
        std::string_view copy(&character, 1);
        for (const Entity& entity : kEntities) {
            if (entity.character == character) copy = entity.text;
        }
        filtered += copy;
    }
    return filtered;
}
