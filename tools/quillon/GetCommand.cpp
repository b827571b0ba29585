#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <string>
#include <vector>

#include "Command.h"
#include "Session.h"
#include "StateOptions.h"
#include "ToolError.h"
#include "ValueJson.h"
#include "ValueText.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

/// A parameter to read; a text query such as FG_PARAM_DESCR=FG_WIDTH brings its question along.
struct Request {
    const host::ParameterInfo* parameter;
    host::ParameterValue value;
};

Request makeRequest(const host::ParameterCatalogue& catalogue, const std::string& argument) {
    const size_t equals = argument.find('=');
    const host::ParameterInfo& parameter = parameterByName(catalogue, argument.substr(0, equals));
    if (equals == std::string::npos) return {&parameter, {}};
    if (parameter.type != host::ParameterType::Text) {
        throw ToolError(kExitUsage,
                        fmt::format("{} takes no question; '--set {}' writes a value", parameter.name, argument));
    }
    return {&parameter, argument.substr(equals + 1)};
}

class GetCommand : public Command {
public:
    explicit GetCommand(CLI::App& options) : mState(options) {
        options.add_option("NAME", mNames, "parameter, with or without FG_, in any letter case")->required();
    }

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber, session.port());
        const host::ParameterCatalogue catalogue(grabber, session.port());
        std::vector<Request> requests;
        requests.reserve(mNames.size());
        for (const std::string& name : mNames) requests.push_back(makeRequest(catalogue, name));
        int exitCode = kExitOk;
        Json objects = Json::array();
        for (Request& request : requests) {
            const host::ParameterInfo& parameter = *request.parameter;
            const int code = host::readValue(grabber, parameter, request.value, session.port());
            if (code < 0) {
                fmt::print(stderr, "quillon: {} cannot be read: {}\n", parameter.name, host::describeResultCode(code));
                exitCode = kExitRefused;
                continue;
            }
            if (session.isJson()) {
                objects.push_back(parameterJson(parameter, &request.value));
            } else {
                fmt::print("{} = {}\n", parameter.name, withUnit(parameter, formatValue(parameter, request.value)));
            }
        }
        if (session.isJson()) printJson(objects);
        return exitCode;
    }

private:
    StateOptions mState;
    std::vector<std::string> mNames;
};

}  // namespace

std::unique_ptr<Command> makeGetCommand(CLI::App& options) { return std::make_unique<GetCommand>(options); }

}  // namespace quillon::tool
