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
#include "ToolError.h"
#include "ValueJson.h"
#include "host/DesignRegisters.h"

namespace quillon::tool {

namespace {

/// Bits of a register that its parameter brings.
constexpr int kReadableBits = 32;

std::string hexadecimal(const host::DesignRegister& designRegister, uint32_t value) {
    const int bits = std::clamp(designRegister.width, 1, kReadableBits);
    const char* const note = designRegister.width > kReadableBits ? " (low 32 bits)" : "";
    return fmt::format("0x{:0{}x}{}", value, (bits + 3) / 4, note);
}

std::vector<std::string> row(const host::Grabber& grabber, const host::DesignRegister& designRegister) {
    std::vector<std::string> cells{designRegister.name,
                                   designRegister.width == 0 ? "-" : fmt::format("{}", designRegister.width),
                                   designRegister.isWritable ? "read/write" : "read"};
    uint32_t value = 0;
    if (host::readRegister(grabber, designRegister, value) < 0) {
        cells.emplace_back("(not readable)");
    } else {
        cells.push_back(fmt::format("{}", value));
        cells.push_back(hexadecimal(designRegister, value));
    }
    return cells;
}

Json registerJson(const host::Grabber& grabber, const host::DesignRegister& designRegister) {
    Json object{
        {"name", designRegister.name}
    };
    if (designRegister.width != 0) object["width"] = designRegister.width;
    object["writable"] = designRegister.isWritable;
    uint32_t value = 0;
    if (host::readRegister(grabber, designRegister, value) >= 0) object["value"] = value;
    return object;
}

class RegistersCommand : public Command {
public:
    explicit RegistersCommand(CLI::App& options) : mState(options) {
        options.add_option("PATTERN", mPattern,
                           "part of a register's name, or with * and ? the whole of it, in any letter case");
    }

    int run(Session& session) override {
        mState.check();
        host::publishDesignRegisters();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber);
        const auto registers = host::designRegisters(host::ParameterCatalogue(grabber));
        if (registers.empty()) throw ToolError(kExitEnvironment, "this applet does not publish its registers");
        const NamePattern pattern(mPattern);
        Table table;
        table.add({"NAME", "WIDTH", "DIRECTION", "VALUE", "HEXADECIMAL"});
        Json objects = Json::array();
        bool isAnyChosen = false;
        for (const host::DesignRegister& designRegister : registers) {
            if (!pattern.matches("DRA_" + designRegister.name, "DRA_")) continue;
            if (session.isJson()) {
                objects.push_back(registerJson(grabber, designRegister));
            } else {
                table.add(row(grabber, designRegister));
            }
            isAnyChosen = true;
        }
        if (!isAnyChosen) {
            throw ToolError(kExitUsage,
                            fmt::format("no register matches '{}'; 'quillon registers' shows them all", mPattern));
        }
        session.isJson() ? printJson(objects) : fmt::print("{}", table.text(outputStyle()));
        return kExitOk;
    }

private:
    std::string mPattern;
    StateOptions mState;
};

}  // namespace

std::unique_ptr<Command> makeRegistersCommand(CLI::App& options) { return std::make_unique<RegistersCommand>(options); }

}  // namespace quillon::tool
