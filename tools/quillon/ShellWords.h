#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace quillon::tool {

/// Takes a line of the shell apart at its blanks. Blanks between double or single quotes stay; a # at the begin of a
/// word starts a comment.
/// \throws ToolError when a quote is not closed
std::vector<std::string> splitWords(std::string_view line);

/// Reads words as the command line does; help is printed at once.
/// \return false when help was asked for
/// \throws ToolError when they cannot be understood
bool parseWords(CLI::App& app, std::vector<std::string> words);

}  // namespace quillon::tool
