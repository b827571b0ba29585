#include <fmt/format.h>

#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "AppletFiles.h"
#include "Command.h"
#include "ConfigText.h"
#include "Session.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

/// Answers as diff does: nothing differs, something does. All else is the exit code of an error.
constexpr int kExitEqual = 0;
constexpr int kExitDifferent = 1;

constexpr std::string_view kPointSeparator = ", ";

/// Splits the value of a curve into its points; an ordinary value is a single one.
std::vector<std::string_view> pointsOf(std::string_view value) {
    std::vector<std::string_view> points;
    while (true) {
        const size_t end = value.find(kPointSeparator);
        points.push_back(value.substr(0, end));
        if (end == std::string_view::npos) return points;
        value.remove_prefix(end + kPointSeparator.size());
    }
}

/// Takes needless zeros off the end of a number.
std::string withoutZeros(std::string_view number) {
    std::string text(number);
    if (text.find('.') == std::string::npos) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

/// Writes a value of a file the way a person types it.
std::string readable(const host::ParameterCatalogue& catalogue, const ConfigLine& line) {
    const host::ParameterInfo* parameter = catalogue.find(line.key);
    if (parameter == nullptr) return line.value;
    std::string text = line.value.empty() || line.value == " " ? "(empty)" : line.value;
    const bool isInteger =
        parameter->type == host::ParameterType::Enumeration || parameter->type == host::ParameterType::Integer;
    if (isInteger) {
        int32_t value = 0;
        const char* const end = line.value.data() + line.value.size();
        if (std::from_chars(line.value.data(), end, value).ptr == end) text = formatValue(*parameter, value);
    }
    return parameter->unit.empty() ? text : text + " " + parameter->unit;
}

/// Two curves, of which all points would fill a page: their first difference, and how many there are.
std::vector<std::string> curveRow(const ConfigLine& first, const ConfigLine& second) {
    const auto left = pointsOf(first.value);
    const auto right = pointsOf(second.value);
    if (left.size() != right.size()) {
        return {"  " + first.key, fmt::format("{} points", left.size()), fmt::format("{} points", right.size())};
    }
    size_t differences = 0;
    size_t where = 0;
    for (size_t i = left.size(); i-- > 0;) {
        if (left[i] == right[i]) continue;
        ++differences;
        where = i;
    }
    return {"  " + first.key, fmt::format("{} at point {}", withoutZeros(left[where]), where),
            fmt::format("{} at point {}, the first of {} that differ", withoutZeros(right[where]), where, differences)};
}

std::vector<std::string> row(const host::ParameterCatalogue& catalogue, const ConfigLine& first,
                             const ConfigLine& second) {
    if (first.value.find(kPointSeparator) != std::string::npos && catalogue.find(first.key) == nullptr) {
        return curveRow(first, second);
    }
    return {"  " + first.key, readable(catalogue, first), readable(catalogue, second)};
}

const ConfigLine* findKey(const std::vector<ConfigLine>& section, const std::string& key) {
    const auto found = std::find_if(section.begin(), section.end(), [&](const auto& line) { return line.key == key; });
    return found == section.end() ? nullptr : &*found;
}

class DiffCommand : public Command {
public:
    explicit DiffCommand(CLI::App& options) {
        options.add_option("FILE", mFiles, "one configuration file (.mcf), compared with the defaults, or two")
            ->required()
            ->expected(1, 2);
    }

    int run(Session& session) override;

private:
    /// \return the state that a file makes out of the defaults; that of the defaults for an empty name
    static ConfigSections stateOf(Session& session, const std::string& file);

    std::vector<std::string> mFiles;
};

ConfigSections DiffCommand::stateOf(Session& session, const std::string& file) {
    session.close();
    host::Grabber& grabber = session.grabber();
    if (!file.empty()) loadConfiguration(grabber, file);
    return readSections(savedText(grabber));
}

int DiffCommand::run(Session& session) {
    for (const std::string& file : mFiles) checkReadable(file, kConfigurationFile);
    const bool isAgainstDefaults = mFiles.size() == 1;
    const ConfigSections first = stateOf(session, isAgainstDefaults ? "" : mFiles.front());
    const ConfigSections second = stateOf(session, mFiles.back());
    const host::ParameterCatalogue catalogue(session.grabber());
    Table table;
    table.add({"PARAMETER", isAgainstDefaults ? "default" : mFiles.front(), mFiles.back()});
    Json objects = Json::array();
    int exitCode = kExitEqual;
    for (size_t port = 0; port < first.size(); ++port) {
        bool hasHeading = false;
        for (const ConfigLine& line : first[port]) {
            const ConfigLine* other = findKey(second[port], line.key);
            if (other == nullptr || other->value == line.value) continue;
            if (!hasHeading) table.add({port == 0 ? "Port A" : "Port B"});
            hasHeading = true;
            table.add(row(catalogue, line, *other));
            objects.push_back({
                {"port",      port        },
                {"parameter", line.key    },
                {"first",     line.value  },
                {"second",    other->value}
            });
            exitCode = kExitDifferent;
        }
    }
    if (session.isJson()) {
        printJson(objects);
    } else if (exitCode == kExitDifferent) {
        fmt::print("{}", table.text());
    }
    return exitCode;
}

}  // namespace

std::unique_ptr<Command> makeDiffCommand(CLI::App& options) { return std::make_unique<DiffCommand>(options); }

}  // namespace quillon::tool
