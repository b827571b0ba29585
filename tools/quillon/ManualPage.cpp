#include "ManualPage.h"

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string_view>

namespace quillon::tool {

namespace {

/// Takes their meaning from the characters that the formatter knows.
std::string escaped(std::string_view text) {
    std::string result;
    bool isLineStart = true;
    for (const char letter : text) {
        if (isLineStart && (letter == '.' || letter == '\'')) result += "\\&";
        if (letter == '-') {
            result += "\\-";
        } else if (letter == '\\') {
            result += "\\e";
        } else {
            result += letter;
        }
        isLineStart = letter == '\n';
    }
    return result;
}

std::string optionText(const CLI::Option& option) {
    std::string type;
    if (option.get_items_expected_max() > 0 && !option.get_positional()) {
        type = ' ' + option.get_type_name();
        if (!option.get_default_str().empty()) type += " [" + option.get_default_str() + "]";
    }
    return fmt::format(".TP\n.B {}\n{}\n", escaped(option.get_name(option.get_positional(), true) + type),
                       escaped(option.get_description()));
}

std::string optionsText(const CLI::App& command) {
    std::string text;
    for (const CLI::Option* option : command.get_options()) {
        // The manual page tells about --help once.
        const bool isRepeated = command.get_parent() != nullptr && option == command.get_help_ptr();
        if (!isRepeated && !option->get_group().empty()) text += optionText(*option);
    }
    return text;
}

/// Footers have lines of their own, which must not be filled up.
std::string unfilled(const std::string& text) {
    return text.empty() ? "" : fmt::format(".PP\n.nf\n{}\n.fi\n", escaped(text));
}

std::string commandText(const CLI::App& command, const std::string& prefix) {
    const std::string name = prefix + command.get_name();
    std::string text = fmt::format(".SS {}\n{}\n", escaped(name), escaped(command.get_description()));
    text += optionsText(command) + unfilled(command.get_footer());
    for (const CLI::App* inner : command.get_subcommands({})) text += commandText(*inner, name + " ");
    return text;
}

}  // namespace

std::string manualPage(const CLI::App& program) {
    const std::string& name = program.get_name();
    std::string text = fmt::format(".TH {} 1\n.SH NAME\n{} \\- {}\n", escaped(name), escaped(name),
                                   escaped(program.get_description()));
    text += fmt::format(".SH SYNOPSIS\n.B {}\n[OPTIONS] COMMAND ...\n", escaped(name));
    text += ".SH OPTIONS\n" + optionsText(program) + ".SH COMMANDS\n";
    for (const CLI::App* command : program.get_subcommands({})) {
        if (!command->get_group().empty()) text += commandText(*command, "");
    }
    return text + ".SH NOTES\n" + unfilled(program.get_footer());
}

}  // namespace quillon::tool
