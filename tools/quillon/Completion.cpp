#include "Completion.h"

#include <strings.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <charconv>
#include <exception>
#include <string_view>

#include "Session.h"

namespace quillon::tool {

namespace {

using Words = std::vector<std::string>;

bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && strncasecmp(text.data(), beginning.data(), beginning.size()) == 0;
}

/// Where the words before the last have led.
class Reading {
public:
    explicit Reading(const CLI::App& program) : mCommand(&program) {}

    void take(const std::string& word);

    [[nodiscard]] const CLI::App& command() const { return *mCommand; }
    /// \return the option that takes the next word, or null
    [[nodiscard]] const CLI::Option* open() const { return mRoom > 0 ? mOpen : nullptr; }
    /// \return the option --port, --board or --applet in the session's terms
    [[nodiscard]] const SessionOptions& options() const { return mOptions; }
    /// \return the positional argument that takes the next word, or null
    [[nodiscard]] const CLI::Option* positional() const;

private:
    [[nodiscard]] const CLI::Option* find(const std::string& name) const;
    void remember(const std::string& value);

    const CLI::App* mCommand;
    const CLI::Option* mOpen = nullptr;
    int mRoom = 0;         ///< words that the open option still takes
    int mPositionals = 0;  ///< words of positional arguments so far
    SessionOptions mOptions;
};

const CLI::Option* Reading::find(const std::string& name) const {
    for (const CLI::App* app = mCommand; app != nullptr; app = app->get_parent()) {
        if (const CLI::Option* option = app->get_option_no_throw(name)) return option;
    }
    return nullptr;
}

void Reading::remember(const std::string& value) {
    if (mOpen->check_name("--applet")) mOptions.appletPath = value;
    const auto number = [&](int& target) { std::from_chars(value.data(), value.data() + value.size(), target); };
    if (mOpen->check_name("--board")) number(mOptions.board);
    if (mOpen->check_name("--port")) number(mOptions.port);
}

void Reading::take(const std::string& word) {
    if (word.starts_with('-')) {
        mOpen = find(word);
        mRoom = mOpen == nullptr ? 0 : mOpen->get_items_expected_max();
        return;
    }
    if (mRoom > 0) {
        remember(word);
        --mRoom;
        return;
    }
    const auto inner = mCommand->get_subcommands([&](const CLI::App* app) { return app->get_name() == word; });
    if (inner.empty()) {
        ++mPositionals;
    } else {
        mCommand = inner.front();
    }
}

const CLI::Option* Reading::positional() const {
    int before = mPositionals;
    for (const CLI::Option* option : mCommand->get_options()) {
        if (!option->get_positional()) continue;
        if (before < option->get_items_expected_max()) return option;
        before -= option->get_items_expected_max();
    }
    return nullptr;
}

void addOptions(const CLI::App& command, Words& names) {
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent()) {
        for (const CLI::Option* option : app->get_options()) {
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

void addCommands(const CLI::App& command, Words& names) {
    for (const CLI::App* inner : command.get_subcommands({})) names.push_back(inner->get_name());
}

/// \return whether a name begins as a person typed it, with or without "FG_"
bool isNameOf(const std::string& name, const std::string& typed) {
    return beginsWith(name, typed) || (name.starts_with("FG_") && beginsWith(name.substr(3), typed));
}

/// Adds the names of parameters, or of settings when \p ending is an equals sign.
void addParameters(const host::ParameterCatalogue& catalogue, const std::string& typed, const char* ending,
                   Words& names) {
    const bool isSetting = *ending != '\0';
    for (const host::ParameterInfo& parameter : catalogue.parameters()) {
        const bool isPossible = isSetting ? parameter.isWritable() : parameter.isReadable();
        if (isPossible && isNameOf(parameter.name, typed)) names.push_back(parameter.name + ending);
    }
}

void addEntries(const host::ParameterCatalogue& catalogue, const std::string& name, const std::string& typed,
                Words& names) {
    const host::ParameterInfo* parameter = catalogue.find(name);
    if (parameter == nullptr) return;
    for (const host::EnumerationEntry& entry : parameter->entries) {
        if (isNameOf(entry.name, typed)) names.push_back(name + "=" + entry.name);
    }
}

/// Adds what an argument of this kind can be.
void addValues(const std::string& kind, const std::string& typed, const SessionOptions& options, Words& names) {
    const bool isSetting = kind == "NAME=VALUE";
    if (!isSetting && kind != "NAME" && kind != "WORD") return;
    Session session(options);
    const host::ParameterCatalogue catalogue(session.grabber(), options.port);
    const size_t equals = typed.find('=');
    if (isSetting && equals != std::string::npos) {
        addEntries(catalogue, typed.substr(0, equals), typed.substr(equals + 1), names);
    } else {
        addParameters(catalogue, typed, isSetting ? "=" : "", names);
    }
}

}  // namespace

std::vector<std::string> completions(const CLI::App& program, const std::vector<std::string>& words) {
    if (words.empty()) return {};
    const std::string& typed = words.back();
    Reading reading(program);
    for (size_t i = 0; i + 1 < words.size(); ++i) reading.take(words[i]);
    Words names;
    const auto keepFitting = [&] { std::erase_if(names, [&](const auto& name) { return !beginsWith(name, typed); }); };
    if (typed.starts_with('-')) {
        addOptions(reading.command(), names);
        keepFitting();
        return names;
    }
    if (reading.open() == nullptr) {
        addCommands(reading.command(), names);
        keepFitting();
    }
    try {
        const CLI::Option* option = reading.open() != nullptr ? reading.open() : reading.positional();
        if (option == nullptr) return names;
        const std::string kind = option->get_positional() ? option->get_name(true) : option->get_type_name();
        if (kind == "COMMAND") {
            addCommands(program, names);
            keepFitting();
        }
        addValues(kind, typed, reading.options(), names);
    } catch (const std::exception&) {
        // Whoever completes a line wants no message in its middle; running the command tells what is wrong.
        return names;
    }
    return names;
}

}  // namespace quillon::tool
