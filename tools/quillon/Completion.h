#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quillon::tool {

/// Completes a command line for a shell.
/// \param program all commands with their options; not parsed
/// \param words words behind the program's name, of which the last, perhaps empty, is the one to complete
/// \return what it can become: commands, options, parameter names and settings of the board as it is now. None where a
///         file is wanted, which the shell knows better, and none when no board opens
std::vector<std::string> completions(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace quillon::tool
