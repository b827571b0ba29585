#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/TemporaryFolder.h"

namespace tooltest {

using testing::AllOf;
using testing::ContainsRegex;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// How a program ended and what it wrote.
struct ToolResult {
    int exitCode = -1;  ///< 128 and the signal's number where a signal killed it
    std::string output;
    std::string errors;
};

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

/// Pictures arrive as fast as the machine makes them.
inline const Environment kFast{
    {"TAVO_SIM_MODE", "fast"}
};

/// A program that runs beside the test, as a user starts it. Killed and reaped when the test forgets it.
class ToolProcess {
public:
    /// \param environment variables added to the test's own
    ToolProcess(const std::string& program, const Arguments& arguments, const Environment& environment = {});
    ToolProcess(const ToolProcess&) = delete;
    ToolProcess& operator=(const ToolProcess&) = delete;
    ~ToolProcess();

    void signal(int number) const;
    /// Reads all that it writes until it ends.
    ToolResult finish();

private:
    pid_t mProcess = -1;
    int mOutput = -1;
    int mErrors = -1;
};

/// The staged tool.
std::string toolPath();
ToolResult runTool(const Arguments& arguments, const Environment& environment = {});
/// Runs a shell command line in which "$1" is the staged tool.
ToolResult runShell(const std::string& command, const Environment& environment = {});
/// Runs the staged tool with \p words where no file may have more than \p blocks of 512 bytes: a write fails in its
/// middle then, as on a full disk. What is measured of the tool goes nowhere, so that it does not end up cut.
ToolResult runOnFullDisk(int blocks, const std::string& words, Environment environment = {});

/// \return the names of all files in \p folder, hidden ones included, sorted
std::vector<std::string> filesIn(const std::filesystem::path& folder);

}  // namespace tooltest
