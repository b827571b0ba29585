#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "Shell.h"

namespace quillon::tool {

/// What the words behind a command of the shell are, for completion.
enum class ShellWordKind { Other, Names, Assignments };

/// One command: of the shell itself, or a command of the tool, which finds the grabber open and as it is.
struct ShellRow {
    const char* name;
    const char* arguments;
    const char* summary;
    ShellWordKind words;
    void (Shell::*run)(const std::vector<std::string>& words);
    size_t fewestWords;
    size_t mostWords;
    std::unique_ptr<Command> (*make)(CLI::App& options);  ///< null for the shell's own, which `run` runs
};

}  // namespace quillon::tool
