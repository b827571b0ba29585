#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "LineSource.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

class ScriptLines : public LineSource {
public:
    /// \param descriptor owned from now on
    ScriptLines(int descriptor, std::string name) : mDescriptor(descriptor), mName(std::move(name)) {}
    ~ScriptLines() override { close(mDescriptor); }

    std::optional<std::string> next() override {
        size_t end = mText.find('\n');
        while (end == std::string::npos && readMore()) end = mText.find('\n');
        if (mIsInterrupted || (end == std::string::npos && mText.empty())) return std::nullopt;
        std::string line = mText.substr(0, end);
        mText.erase(0, end == std::string::npos ? mText.size() : end + 1);
        if (line.ends_with('\r')) line.pop_back();
        ++mNumber;
        return line;
    }

    void interrupt() override { mWakeUp.call(); }
    [[nodiscard]] bool isInteractive() const override { return false; }
    [[nodiscard]] std::string place() const override { return fmt::format("{}:{}", mName, mNumber); }

private:
    /// \return false at the end
    bool readMore() {
        mIsInterrupted = mIsInterrupted || !mWakeUp.waitFor(mDescriptor);
        if (mIsInterrupted) return false;
        std::array<char, 4096> chunk{};
        const ssize_t count = read(mDescriptor, chunk.data(), chunk.size());
        if (count < 0) {
            throw ToolError(kExitEnvironment, fmt::format("cannot read {}: {}", mName, std::strerror(errno)));
        }
        mText.append(chunk.data(), static_cast<size_t>(count));
        return count > 0;
    }

    const int mDescriptor;
    const std::string mName;
    WakeUp mWakeUp;
    std::string mText;  ///< read and not yet given out
    int mNumber = 0;
    bool mIsInterrupted = false;
};

}  // namespace

WakeUp::WakeUp() : mEvent(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (mEvent < 0) throw ToolError(kExitEnvironment, fmt::format("no event: {}", std::strerror(errno)));
}

WakeUp::~WakeUp() { close(mEvent); }

void WakeUp::call() const { eventfd_write(mEvent, 1); }

bool WakeUp::waitFor(int descriptor) const {
    std::array<pollfd, 2> sources{
        {{descriptor, POLLIN, 0}, {mEvent, POLLIN, 0}}
    };
    while (poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR) {
    }
    if (sources[1].revents == 0) return true;
    eventfd_t calls = 0;
    eventfd_read(mEvent, &calls);
    return false;
}

std::unique_ptr<LineSource> openScript(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw ToolError(kExitEnvironment, fmt::format("cannot read {}: {}", path, std::strerror(errno)));
    }
    return std::make_unique<ScriptLines>(descriptor, path);
}

std::unique_ptr<LineSource> openPipe() {
    return std::make_unique<ScriptLines>(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0), "standard input");
}

}  // namespace quillon::tool
