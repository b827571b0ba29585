#include "simulation/design/DesignText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

#include "simulation/design/DesignImage.h"
#include "simulation/support/Numbers.h"

namespace simulation {

namespace {

constexpr std::string_view kBlanks = " \t\r";

/// Splits a line into words; a word in double quotes may hold blanks. \return what is wrong, or empty.
std::string splitWords(std::string_view line, std::vector<std::string>& words) {
    while (true) {
        const size_t start = line.find_first_not_of(kBlanks);
        if (start == std::string_view::npos || line[start] == '#') return {};
        line.remove_prefix(start);
        size_t length = 0;
        if (line.front() == '"') {
            length = line.find('"', 1);
            if (length == std::string_view::npos) return "the closing quote is missing";
            words.emplace_back(line.substr(1, length - 1));
            ++length;
        } else {
            length = std::min(line.find_first_of(kBlanks), line.size());
            words.emplace_back(line.substr(0, length));
        }
        line.remove_prefix(length);
    }
}

std::optional<uint64_t> parseValue(std::string_view text) {
    if (!text.starts_with("0x")) return parseNumber<uint64_t>(text);
    text.remove_prefix(2);
    uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

using Words = std::vector<std::string>;

std::string readBoardType(const Words& words, Design& design) {
    const auto type = parseNumber<uint32_t>(words[1]);
    if (!type || *type == 0) return "\"" + words[1] + "\" is no board type";
    if (design.boardType != 0) return "the board type stands here twice";
    design.boardType = *type;
    return {};
}

std::string readInfo(const Words& words, Design& design) {
    design.userInfos.push_back({words[1], words[2]});
    return {};
}

std::string readRegister(const Words& words, Design& design) {
    const auto width = parseNumber<uint32_t>(words[2]);
    if (!width) return "\"" + words[2] + "\" is no width in bits";
    if (words[3] != "write" && words[3] != "read") return "\"" + words[3] + "\" is neither write nor read";
    const auto initialValue = parseValue(words[4]);
    if (!initialValue) return "\"" + words[4] + "\" is no initial value";
    design.registers.push_back(
        {words[1], *width, words[3] == "write" ? kDirectionWrite : kDirectionRead, *initialValue});
    return {};
}

struct Statement {
    std::string_view name;
    size_t words;
    std::string_view form;
    std::string (*read)(const Words&, Design&);
};

constexpr std::array kStatements{
    Statement{"board-type", 2, "board-type NUMBER",                      readBoardType},
    Statement{"info",       3, "info NAME \"TEXT\"",                     readInfo     },
    Statement{"register",   5, "register NAME WIDTH write|read INITIAL", readRegister },
};

std::string readLine(std::string_view line, Design& design) {
    Words words;
    std::string fault = splitWords(line, words);
    if (!fault.empty() || words.empty()) return fault;
    const auto* const statement = std::find_if(kStatements.begin(), kStatements.end(),
                                               [&](const Statement& row) { return row.name == words[0]; });
    if (statement == kStatements.end()) return "\"" + words[0] + "\" is no statement";
    if (words.size() != statement->words) return "the form is: " + std::string(statement->form);
    fault = statement->read(words, design);
    return fault.empty() ? findFault(design) : fault;
}

}  // namespace

std::optional<Design> parseDesignText(std::string_view text, std::string& why) {
    Design design;
    int number = 0;
    while (!text.empty()) {
        const size_t length = std::min(text.find('\n'), text.size());
        ++number;
        why = readLine(text.substr(0, length), design);
        if (!why.empty()) {
            why.insert(0, "line " + std::to_string(number) + ": ");
            return std::nullopt;
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    if (design.boardType == 0) {
        why = "line " + std::to_string(number) + ": the text ends and no board-type was stated";
        return std::nullopt;
    }
    return design;
}

}  // namespace simulation
