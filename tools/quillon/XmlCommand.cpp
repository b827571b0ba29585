#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cerrno>
#include <cstdio>
#include <string>
#include <tuple>

#include "Command.h"
#include "FileBeside.h"
#include "Session.h"
#include "StateOptions.h"
#include "ToolError.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

void writeFile(const std::string& path, const std::string& text) {
    NewFile file(path);
    errno = 0;
    // A short write shows in the stream's error flag.
    std::ignore = std::fwrite(text.data(), 1, text.size(), file.stream());
    file.complete();
}

class XmlCommand : public Command {
public:
    explicit XmlCommand(CLI::App& options) : mState(options) {
        options.add_option("--output", mOutput, "file to write; without it the document is printed")->type_name("FILE");
    }

    int run(Session& session) override {
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber, session.port());
        std::string document;
        const int code = grabber.describe(document, session.port());
        if (code < 0) {
            throw ToolError(kExitRefused, fmt::format("the applet does not describe port {}: {}", session.port(),
                                                      host::describeResultCode(code)));
        }
        if (mOutput.empty()) {
            fmt::print("{}", document);
        } else {
            writeFile(mOutput, document);
        }
        return kExitOk;
    }

private:
    StateOptions mState;
    std::string mOutput;
};

}  // namespace

std::unique_ptr<Command> makeXmlCommand(CLI::App& options) { return std::make_unique<XmlCommand>(options); }

}  // namespace quillon::tool
