#include "ShellWords.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cctype>
#include <utility>

#include "ToolError.h"

namespace quillon::tool {

std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    bool isInWord = false;
    char quote = 0;
    for (const char letter : line) {
        const bool isBlank = quote == 0 && std::isspace(static_cast<unsigned char>(letter)) != 0;
        if (isBlank) {
            isInWord = false;
            continue;
        }
        if (!isInWord) {
            if (letter == '#') break;
            words.emplace_back();
            isInWord = true;
        }
        if (quote == 0 && (letter == '"' || letter == '\'')) {
            quote = letter;
        } else if (letter == quote) {
            quote = 0;
        } else {
            words.back() += letter;
        }
    }
    if (quote != 0) throw ToolError(kExitUsage, std::string("the quote ") + quote + " is not closed");
    return words;
}

bool parseWords(CLI::App& app, std::vector<std::string> words) {
    std::reverse(words.begin(), words.end());
    try {
        app.parse(std::move(words));
        return true;
    } catch (const CLI::Success& help) {
        app.exit(help);
        return false;
    } catch (const CLI::ParseError& error) {
        throw ToolError(kExitUsage, error.what());
    }
}

}  // namespace quillon::tool
