// The filters through which texts enter the GenApi document.
#include <algorithm>
#include <array>
#include <string_view>

#include "StandardApplets/grabber_basis/XmlFilters.h"
#include "fuzz/Scratch.h"

namespace {

struct Entity {
    std::string_view text;
    char character;
};
constexpr std::array kEntities{
    Entity{"&amp;",  '&' },
    Entity{"&lt;",   '<' },
    Entity{"&gt;",   '>' },
    Entity{"&quot;", '"' },
    Entity{"&apos;", '\''},
};

/// What a reader of XML makes of \p text.
std::string unescaped(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto* entity = std::find_if(kEntities.begin(), kEntities.end(),
                                          [text](const Entity& e) { return text.starts_with(e.text); });
        const bool isEntity = entity != kEntities.end();
        expect(isEntity || text.front() != '&', "an ampersand begins an entity");
        plain += isEntity ? entity->character : text.front();
        text.remove_prefix(isEntity ? entity->text.size() : 1);
    }
    return plain;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string name = xmlNameFilter(text);
    const auto isNameCharacter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    expect(std::all_of(name.begin(), name.end(), isNameCharacter), "a name has letters, digits and underscores");
    // Digits and underscores are kept by their place in the text, so only a text with a letter in front keeps its name.
    const bool hasLetterInFront = !text.empty() && xmlNameFilter(text.substr(0, 1)) == text.substr(0, 1);
    expect(!hasLetterInFront || xmlNameFilter(name) == name, "a name passes unchanged");
    const std::string escaped = xmlStringFilter(text);
    expect(escaped.find_first_of("<>\"'") == std::string::npos, "a text has no character that XML gives a meaning");
    expect(unescaped(escaped) == text, "a reader of XML gets the text back");
    return 0;
}
