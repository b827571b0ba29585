#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <span>
#include <string>

#include "Command.h"
#include "Session.h"
#include "StateOptions.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueJson.h"

namespace quillon::tool {

namespace {

std::string textOf(const char* text) { return text == nullptr ? "" : text; }

const char* typeName(REG_FORMAT format) {
    switch (format) {
        case REG_FORMAT_INT:
        case REG_FORMAT_UINT:
            return "integer";
        case REG_FORMAT_DOUBLE:
            return "double";
        case REG_FORMAT_ENUM:
            return "enumeration";
        case REG_FORMAT_STRING:
            return "text";
        default:
            return "structure";
    }
}

std::span<RegisterInfo* const> elementsOf(const RegisterInfo& group) {
    if (group.u.gReg.nrOfElements <= 0) return {};
    return {group.u.gReg.elements, static_cast<size_t>(group.u.gReg.nrOfElements)};
}

Json groupJson(const RegisterInfo& group) {
    Json object{
        {"group",      textOf(group.name)},
        {"parameters", Json::array()     }
    };
    for (const RegisterInfo* node : elementsOf(group)) {
        if (node->format == REG_FORMAT_GROUP) {
            object["groups"].push_back(groupJson(*node));
        } else {
            object["parameters"].push_back({
                {"id",          node->id                   },
                {"name",        textOf(node->parameterName)},
                {"displayName", textOf(node->name)         },
                {"type",        typeName(node->format)     }
            });
        }
    }
    return object;
}

/// Adds a group and all below it, each level two blanks further in.
void addGroup(Table& table, const RegisterInfo& group, const std::string& indent) {
    table.add({indent + textOf(group.name)});
    const std::string inner = indent + "  ";
    for (const RegisterInfo* node : elementsOf(group)) {
        if (node->format == REG_FORMAT_GROUP) {
            addGroup(table, *node, inner);
        } else {
            table.add(
                {inner + textOf(node->parameterName), textOf(node->name), typeName(node->format), textOf(node->unit)});
        }
    }
}

class TreeCommand : public Command {
public:
    explicit TreeCommand(CLI::App& options) : mState(options) {}

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber, session.port());
        const RegisterInfo* group = grabber.functions().getParameterInfo(grabber.handle(), session.port());
        if (session.isJson()) {
            Json groups = Json::array();
            for (; group != nullptr; group = group->next) groups.push_back(groupJson(*group));
            printJson(groups);
            return kExitOk;
        }
        Table table;
        for (; group != nullptr; group = group->next) addGroup(table, *group, "");
        fmt::print("{}", table.text());
        return kExitOk;
    }

private:
    StateOptions mState;
};

}  // namespace

std::unique_ptr<Command> makeTreeCommand(CLI::App& options) { return std::make_unique<TreeCommand>(options); }

}  // namespace quillon::tool
