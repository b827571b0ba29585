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

/// Adds a group and all below it, each level two blanks further in.
void addGroup(Table& table, const RegisterInfo& group, const std::string& indent) {
    table.add({indent + textOf(group.name)});
    const std::string inner = indent + "  ";
    if (group.u.gReg.nrOfElements <= 0) return;
    for (const RegisterInfo* node : std::span(group.u.gReg.elements, static_cast<size_t>(group.u.gReg.nrOfElements))) {
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
    explicit TreeCommand(CLI::App& options) : mState(options) {
        options.add_option("--port", mPort, "camera port")
            ->check(CLI::Range(0, 1))
            ->type_name("PORT")
            ->capture_default_str();
    }

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber);
        Table table;
        const RegisterInfo* group = grabber.functions().getParameterInfo(grabber.handle(), mPort);
        for (; group != nullptr; group = group->next) addGroup(table, *group, "");
        fmt::print("{}", table.text());
        return kExitOk;
    }

private:
    StateOptions mState;
    int mPort = 0;
};

}  // namespace

std::unique_ptr<Command> makeTreeCommand(CLI::App& options) { return std::make_unique<TreeCommand>(options); }

}  // namespace quillon::tool
