#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <array>
#include <string>

#include "Command.h"
#include "NamePattern.h"
#include "Session.h"
#include "StateOptions.h"
#include "Table.h"
#include "ToolError.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

using host::ParameterInfo;
using host::ParameterType;

/// Parameters whose first read takes a measurement of 100 ms.
constexpr std::array kMeasured{FG_PLX_CLK, FG_MEASURED_PCIE_CLK};

bool isMeasured(const ParameterInfo& parameter) {
    return std::find(kMeasured.begin(), kMeasured.end(), parameter.id) != kMeasured.end();
}

bool isChosen(const NamePattern& pattern, const ParameterInfo& parameter) {
    return pattern.matches(parameter.name, "FG_") || pattern.matches(parameter.displayName);
}

std::string accessText(int access) {
    std::string text;
    text += (access & 1) != 0 ? 'r' : '-';
    text += (access & 2) != 0 ? 'w' : '-';
    text += (access & 4) != 0 ? 'c' : '-';
    return text;
}

std::string limitsText(const ParameterInfo& parameter) {
    if (parameter.type == ParameterType::Enumeration) return formatEntries(parameter);
    const host::Limits& limits = parameter.limits;
    const bool isWritable = (parameter.access & 2) != 0;
    // A read-only parameter without a range of its own is published with limits of 0 to 0.
    if (!parameter.hasLimits || (!isWritable && limits.minimum == limits.maximum)) return "";
    std::string text =
        fmt::format("{} to {}", formatLimit(parameter, limits.minimum), formatLimit(parameter, limits.maximum));
    if (parameter.type == ParameterType::Integer && limits.step > 1) {
        text += ", step " + formatLimit(parameter, limits.step);
    }
    return text;
}

std::string valueText(const host::Grabber& grabber, const ParameterInfo& parameter, bool mayMeasure) {
    if (isMeasured(parameter) && !mayMeasure) return "(measured when named)";
    if (parameter.type == ParameterType::Structure) return "(structure)";
    host::ParameterValue value;
    const int code = host::readValue(grabber, parameter, value);
    if (code < 0) return "(not readable)";
    const std::string text = formatValue(parameter, value);
    return text.empty() ? "(empty)" : text;
}

class ListCommand : public Command {
public:
    explicit ListCommand(CLI::App& options) : mState(options) {
        options.add_option("PATTERN", mPattern,
                           "part of a name or display name, or with * and ? the whole of it, in any letter case");
    }

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber);
        const host::ParameterCatalogue catalogue(grabber);
        const NamePattern pattern(mPattern);
        Table table;
        table.add({"NAME", "VALUE", "UNIT", "ACCESS", "LIMITS OR ENTRIES"});
        const std::string* group = nullptr;
        for (const ParameterInfo& parameter : catalogue.parameters()) {
            if (!isChosen(pattern, parameter)) continue;
            if (group == nullptr || *group != parameter.group) {
                table.add({parameter.group.empty() ? "Other" : parameter.group});
                group = &parameter.group;
            }
            table.add({"  " + parameter.name, valueText(grabber, parameter, pattern.isSelective()), parameter.unit,
                       accessText(parameter.access), limitsText(parameter)});
        }
        if (group == nullptr) {
            throw ToolError(kExitUsage,
                            fmt::format("no parameter matches '{}'; 'quillon list' shows them all", mPattern));
        }
        fmt::print("{}", table.text());
        return kExitOk;
    }

private:
    StateOptions mState;
    std::string mPattern;
};

}  // namespace

std::unique_ptr<Command> makeListCommand(CLI::App& options) { return std::make_unique<ListCommand>(options); }

}  // namespace quillon::tool
