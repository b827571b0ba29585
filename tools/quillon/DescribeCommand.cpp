#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "Command.h"
#include "DependencyProbe.h"
#include "Session.h"
#include "StateOptions.h"
#include "Table.h"
#include "Terminal.h"
#include "ToolError.h"
#include "Units.h"
#include "ValueJson.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

using host::ParameterInfo;
using host::ParameterType;

/// Everything about one parameter.
struct Description {
    ParameterInfo parameter;
    std::string text;
    std::string page;      ///< below the root of the documentation
    std::string pageFile;  ///< where it is installed beside the tool; empty when it is not
    bool hasValue = false;
    host::ParameterValue value;
    std::vector<Dependency> dependencies;
};

std::string accessSentence(const ParameterInfo& parameter) {
    std::string text = formatAccess(parameter) + ": ";
    text += parameter.isReadable() ? "can be read" : "cannot be read";
    if (!parameter.isWritable()) return text + ", not written";
    return text + (parameter.isChangeable() ? " and written, also while an acquisition runs"
                                            : " and written, but not while an acquisition runs");
}

/// \return why the parameter cannot be written, as far as trying showed it; empty when it can be
std::string lockSentence(const Description& description) {
    if (description.parameter.isWritable()) return "";
    std::vector<std::string> settings;
    for (const Dependency& dependency : description.dependencies) {
        if (!dependency.unlock.empty()) settings.push_back(dependency.unlock);
    }
    if (!settings.empty()) return fmt::format("yes; {} makes it writable", fmt::join(settings, " or "));
    return "yes; no other parameter of its group makes it writable";
}

void addEntries(Table& table, const ParameterInfo& parameter) {
    const char* label = "entries";
    for (const host::EnumerationEntry& entry : parameter.entries) {
        const std::string& name = entry.name.empty() ? entry.displayName : entry.name;
        const bool isNamedTwice = !entry.name.empty() && !entry.displayName.empty() && entry.name != entry.displayName;
        table.add({label, fmt::format("{} ({}){}", name, entry.value, isNamedTwice ? ", " + entry.displayName : "")});
        label = "";
    }
}

void printTable(const Description& description) {
    const ParameterInfo& parameter = description.parameter;
    Table table;
    table.add({"name", parameter.name});
    const auto addIf = [&](const char* label, const std::string& text) {
        if (!text.empty()) table.add({label, text});
    };
    addIf("display name", parameter.displayName);
    addIf("description", description.text);
    table.add({"id", fmt::format("{}", parameter.id)});
    table.add({"type", parameterJson(parameter, nullptr)["type"].get<std::string>()});
    addIf("value", description.hasValue ? withUnit(parameter, formatValue(parameter, description.value)) : "");
    if (parameter.type == ParameterType::Enumeration) {
        addEntries(table, parameter);
    } else {
        addIf("limits now", formatRange(parameter));
    }
    addIf("units", std::string(unitOf(parameter.unit).empty() ? "" : fittingUnits(unitOf(parameter.unit))));
    table.add({"access now", accessSentence(parameter)});
    addIf("locked", lockSentence(description));
    const char* label = "depends on";
    for (const Dependency& dependency : description.dependencies) {
        table.add({label, fmt::format("{}: {}", dependency.name, dependency.effects)});
        label = "";
    }
    addIf("group", parameter.group);
    addIf("page", description.page);
    addIf("page file", description.pageFile);
    fmt::print("{}", table.text(outputStyle()));
}

/// The pages are installed with the tool, whichever board it runs on.
std::string installedPage(const std::string& page) {
    const std::filesystem::path tree = installedAppletPath().parent_path().parent_path().parent_path();
    const std::filesystem::path file = tree / "share" / "doc" / "quillon" / page;
    std::error_code ignored;
    return !page.empty() && std::filesystem::exists(file, ignored) ? file.string() : "";
}

void printObject(const Description& description) {
    Json object = parameterJson(description.parameter, description.hasValue ? &description.value : nullptr);
    if (!description.text.empty()) object["description"] = description.text;
    Json dependencies = Json::array();
    for (const Dependency& dependency : description.dependencies) {
        Json row{
            {"name",    dependency.name   },
            {"effects", dependency.effects}
        };
        if (!dependency.unlock.empty()) row["unlock"] = dependency.unlock;
        dependencies.push_back(std::move(row));
    }
    object["dependsOn"] = std::move(dependencies);
    const std::string lock = lockSentence(description);
    if (!lock.empty()) object["locked"] = lock;
    if (!description.page.empty()) object["page"] = description.page;
    if (!description.pageFile.empty()) object["pageFile"] = description.pageFile;
    printJson(object);
}

class DescribeCommand : public Command {
public:
    explicit DescribeCommand(CLI::App& options) : mState(options) {
        options.add_option("NAME", mName, "parameter, with or without FG_, in any letter case")->required();
        options.add_flag("--no-trying", mIsQuiet,
                         "do not find out what it depends on; that takes other parameters through other values, and "
                         "the board's outputs with them");
    }

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = open(session);
        Description description;
        description.parameter = parameterByName(host::ParameterCatalogue(grabber, session.port()), mName);
        const std::string name = description.parameter.name;
        description.text = host::aboutParameter(grabber, FG_PARAM_DESCR, name);
        description.page = host::aboutParameter(grabber, FG_DOC_URL, name);
        description.pageFile = installedPage(description.page);
        description.hasValue = host::readValue(grabber, description.parameter, description.value, session.port()) >= 0;
        if (!mIsQuiet) {
            const auto restore = [&]() -> host::Grabber& {
                session.close();
                return open(session);
            };
            description.dependencies = DependencyProbe(grabber, session.port(), restore).run(name);
        }
        session.isJson() ? printObject(description) : printTable(description);
        return kExitOk;
    }

private:
    [[nodiscard]] host::Grabber& open(Session& session) const {
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber, session.port());
        return grabber;
    }

    StateOptions mState;
    std::string mName;
    bool mIsQuiet = false;
};

}  // namespace

std::unique_ptr<Command> makeDescribeCommand(CLI::App& options) { return std::make_unique<DescribeCommand>(options); }

}  // namespace quillon::tool
