#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "Command.h"
#include "NamePattern.h"
#include "Session.h"
#include "StateOptions.h"
#include "Table.h"
#include "Terminal.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

using host::ParameterInfo;

/// A parameter as it is listed.
struct Listed {
    const ParameterInfo& parameter;
    std::string description;
};

std::string valueText(const host::Grabber& grabber, const ParameterInfo& parameter, bool mayMeasure, int port) {
    if (parameter.isMeasured() && !mayMeasure) return "(measured when named)";
    if (parameter.type == host::ParameterType::Structure) return "(structure)";
    host::ParameterValue value;
    const int code = host::readValue(grabber, parameter, value, port);
    if (code < 0) return "(not readable)";
    const std::string text = formatValue(parameter, value);
    return text.empty() ? "(empty)" : text;
}

class ListCommand : public Command {
public:
    explicit ListCommand(CLI::App& options) : mState(options) {
        options.add_option(
            "WORD", mWords,
            "words that name, display name or description contain, or with * and ? the whole name, in any "
            "letter case");
    }

    int run(Session& session) override;

private:
    /// \return whether the parameter is asked for
    [[nodiscard]] static bool isChosen(const std::vector<NamePattern>& patterns, const Listed& listed);
    /// \return whether its name is among the words, so that it may take time to read it
    [[nodiscard]] static bool isNamed(const std::vector<NamePattern>& patterns, const ParameterInfo& parameter);
    void printTable(const Session& session, const host::Grabber& grabber, const std::vector<Listed>& chosen) const;
    void printObjects(const Session& session, const host::Grabber& grabber, const std::vector<Listed>& chosen) const;
    [[nodiscard]] std::vector<NamePattern> patterns() const { return {mWords.begin(), mWords.end()}; }

    StateOptions mState;
    std::vector<std::string> mWords;
};

bool ListCommand::isChosen(const std::vector<NamePattern>& patterns, const Listed& listed) {
    return std::all_of(patterns.begin(), patterns.end(), [&](const NamePattern& pattern) {
        return pattern.matches(listed.parameter.name, "FG_") || pattern.matches(listed.parameter.displayName) ||
               pattern.matches(listed.description);
    });
}

bool ListCommand::isNamed(const std::vector<NamePattern>& patterns, const ParameterInfo& parameter) {
    return std::any_of(patterns.begin(), patterns.end(), [&](const NamePattern& pattern) {
        return pattern.isSelective() &&
               (pattern.matches(parameter.name, "FG_") || pattern.matches(parameter.displayName));
    });
}

int ListCommand::run(Session& session) {
    mState.check();
    host::Grabber& grabber = session.grabber();
    mState.apply(grabber, session.port());
    const host::ParameterCatalogue catalogue(grabber, session.port());
    const std::vector<NamePattern> wanted = patterns();
    std::vector<Listed> chosen;
    for (const ParameterInfo& parameter : catalogue.parameters()) {
        Listed listed{parameter, ""};
        const bool needsDescription = session.isJson() || !wanted.empty();
        if (needsDescription) listed.description = host::aboutParameter(grabber, FG_PARAM_DESCR, parameter.name);
        if (isChosen(wanted, listed)) chosen.push_back(std::move(listed));
    }
    if (chosen.empty()) {
        throw ToolError(kExitUsage, fmt::format("no parameter matches '{}'; 'quillon list' shows them all",
                                                fmt::join(mWords, " ")));
    }
    session.isJson() ? printObjects(session, grabber, chosen) : printTable(session, grabber, chosen);
    return kExitOk;
}

void ListCommand::printTable(const Session& session, const host::Grabber& grabber,
                             const std::vector<Listed>& chosen) const {
    const std::vector<NamePattern> wanted = patterns();
    Table table;
    table.add({"NAME", "VALUE", "UNIT", "ACCESS", "LIMITS OR ENTRIES"});
    const std::string* group = nullptr;
    for (const auto& [parameter, description] : chosen) {
        if (group == nullptr || *group != parameter.group) {
            table.add({parameter.group.empty() ? "Other" : parameter.group});
            group = &parameter.group;
        }
        table.add({"  " + parameter.name, valueText(grabber, parameter, isNamed(wanted, parameter), session.port()),
                   parameter.unit, formatAccess(parameter), formatRange(parameter)});
    }
    fmt::print("{}", table.text(outputStyle()));
}

void ListCommand::printObjects(const Session& session, const host::Grabber& grabber,
                               const std::vector<Listed>& chosen) const {
    const std::vector<NamePattern> wanted = patterns();
    Json objects = Json::array();
    for (const auto& [parameter, description] : chosen) {
        host::ParameterValue value;
        const bool mayRead = !parameter.isMeasured() || isNamed(wanted, parameter);
        const bool hasValue = mayRead && host::readValue(grabber, parameter, value, session.port()) >= 0;
        Json object = parameterJson(parameter, hasValue ? &value : nullptr);
        if (!description.empty()) object["description"] = description;
        objects.push_back(std::move(object));
    }
    printJson(objects);
}

}  // namespace

std::unique_ptr<Command> makeListCommand(CLI::App& options) { return std::make_unique<ListCommand>(options); }

}  // namespace quillon::tool
