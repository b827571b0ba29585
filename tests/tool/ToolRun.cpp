#include "tool/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace tooltest {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const Environment& added) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        if (added.count(name) == 0) all.push_back(text);
    }
    for (const auto& [name, value] : added) all.push_back(name + "=" + value);
    return all;
}

/// Appends what can be read now. \return false at the end
bool readSome(int descriptor, std::string& text) {
    std::array<char, 4096> chunk{};
    const ssize_t count = read(descriptor, chunk.data(), chunk.size());
    if (count <= 0) return false;
    text.append(chunk.data(), static_cast<size_t>(count));
    return true;
}

}  // namespace

ToolProcess::ToolProcess(const std::string& program, const Arguments& arguments, const Environment& environment) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    if (pipe2(output.data(), O_CLOEXEC) != 0 || pipe2(errors.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errors[1], 2);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = environmentWith(environment);
    const int problem = posix_spawn(&mProcess, program.c_str(), &actions, nullptr, pointersTo(words).data(),
                                    pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(errors[1]);
    mOutput = output[0];
    mErrors = errors[0];
    if (problem != 0) throw std::runtime_error("cannot start " + program);
}

ToolProcess::~ToolProcess() {
    close(mOutput);
    close(mErrors);
    if (mProcess <= 0) return;
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
}

void ToolProcess::signal(int number) const { kill(mProcess, number); }

ToolResult ToolProcess::finish() {
    ToolResult result;
    std::array<pollfd, 2> sources{
        {{mOutput, POLLIN, 0}, {mErrors, POLLIN, 0}}
    };
    const std::array<std::string*, 2> texts{&result.output, &result.errors};
    for (int open = 2; open > 0;) {
        if (poll(sources.data(), sources.size(), -1) < 0) break;
        for (size_t i = 0; i < sources.size(); ++i) {
            if (sources[i].fd < 0 || sources[i].revents == 0) continue;
            if (readSome(sources[i].fd, *texts[i])) continue;
            sources[i].fd = -1;
            --open;
        }
    }
    int status = 0;
    waitpid(mProcess, &status, 0);
    mProcess = -1;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string toolPath() { return QUILLON_STAGE "/bin/quillon"; }

ToolResult runTool(const Arguments& arguments, const Environment& environment) {
    return ToolProcess(toolPath(), arguments, environment).finish();
}

ToolResult runShell(const std::string& command, const Environment& environment) {
    return ToolProcess("/bin/sh", {"-c", command, "sh", toolPath()}, environment).finish();
}

ToolResult runOnFullDisk(int blocks, const std::string& words, Environment environment) {
    environment["LLVM_PROFILE_FILE"] = "/dev/null";
    return runShell("ulimit -f " + std::to_string(blocks) + "; exec \"$1\" " + words, environment);
}

std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    if (!std::filesystem::exists(folder)) return names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace tooltest
