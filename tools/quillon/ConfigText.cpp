#include "ConfigText.h"

#include <algorithm>

namespace quillon::tool {

namespace {

constexpr size_t kLongestText = 60;

/// Takes the first line off a text.
std::string_view takeLine(std::string_view& text) {
    const size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// \return the second piece of the first line that contains \p key and has one
std::string headerValue(std::string_view text, std::string_view key) {
    constexpr std::string_view kSeparators = "='";
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.find(key) == std::string_view::npos) continue;
        const size_t first = line.find_first_not_of(kSeparators);
        const size_t gap = line.find_first_of(kSeparators, first);
        const size_t second = line.find_first_not_of(kSeparators, gap);
        if (gap == std::string_view::npos || second == std::string_view::npos) continue;
        std::string value(line.substr(second, line.find_first_of(kSeparators, second) - second));
        if (value.size() > kLongestText) value = value.substr(0, kLongestText) + "...";
        std::replace_if(
            value.begin(), value.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
        return value;
    }
    return {};
}

}  // namespace

ConfigHeader readHeader(std::string_view text) { return {headerValue(text, "Hersteller"), headerValue(text, "Typ")}; }

ConfigSections readSections(std::string_view text) {
    ConfigSections sections;
    std::vector<ConfigLine>* section = nullptr;
    while (!text.empty()) {
        std::string_view line = takeLine(text);
        if (line == "[Port A]") section = &sections[0];
        if (line == "[Port B]") section = &sections[1];
        const size_t equals = line.find('=');
        if (section == nullptr || equals == std::string_view::npos) continue;
        std::string_view value = line.substr(equals + 1);
        if (value.ends_with(';')) value.remove_suffix(1);
        if (value.size() >= 2 && value.front() == '\'' && value.back() == '\'') {
            value = value.substr(1, value.size() - 2);
        }
        section->push_back({std::string(line.substr(0, equals)), std::string(value)});
    }
    return sections;
}

}  // namespace quillon::tool
