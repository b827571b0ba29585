#include "AppletFiles.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>

#include "ConfigText.h"
#include "FileBeside.h"
#include "ToolError.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

namespace fs = std::filesystem;

/// Values of FG_KNEE_LUT_SAVE_LOAD_FILE.
constexpr int kLoadAction = 0;
constexpr int kSaveAction = 1;
/// Bytes of a file name that FG_KNEE_LUT_FILE keeps; the rest would be cut off.
constexpr size_t kLongestLutName = 511;

/// A folder in the place for temporary files that goes with all that is in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::error_code problem;
        std::string name = (fs::temp_directory_path(problem) / "quillon-XXXXXX").string();
        if (problem || mkdtemp(name.data()) == nullptr) {
            throw ToolError(kExitEnvironment, fmt::format("cannot make the temporary folder {}: {}; TMPDIR names "
                                                          "another place",
                                                          name, std::strerror(errno)));
        }
        mPath = name;
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        fs::remove_all(mPath, ignored);
    }

    fs::path file(const char* name) const { return mPath / name; }

private:
    fs::path mPath;
};

std::string nameComplaint(const AppletFileKind& kind) {
    return fmt::format("its name does not contain \"{0}\"; name it for example {1}", kind.ending, kind.example);
}

/// \return why a file cannot be read, or an empty text
std::string readComplaint(const fs::path& file) {
    std::error_code problem;
    const fs::file_status status = fs::status(file, problem);
    if (!fs::exists(status)) {
        return problem && status.type() != fs::file_type::not_found ? problem.message() : "there is no such file";
    }
    if (fs::is_directory(status)) return "it is a folder";
    if (!fs::is_regular_file(status)) return "it is no regular file";
    return access(file.c_str(), R_OK) == 0 ? "" : std::strerror(errno);
}

bool fits(const std::string& name, const AppletFileKind& kind) { return name.find(kind.ending) != std::string::npos; }

std::string savedWhy(const fs::path& file, int code) {
    return fmt::format("cannot save {}: {}; check that its disk has room", file.string(),
                       host::describeResultCode(code));
}

/// Finds out why the header of a file was refused, by comparing it with the one that the applet writes.
std::string headerComplaint(const host::Grabber& grabber, const fs::path& file) {
    const ConfigHeader own = readHeader(savedText(grabber));
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    const ConfigHeader theirs = readHeader(text);
    if (theirs.manufacturer.empty()) return "it has no line Hersteller='...', so it is no configuration file";
    if (theirs.manufacturer != own.manufacturer) {
        return fmt::format("it was made for cameras of '{}', and this applet serves '{}'", theirs.manufacturer,
                           own.manufacturer);
    }
    if (theirs.cameraType.empty()) return "it has no line Typ='...'";
    if (theirs.cameraType != own.cameraType && theirs.cameraType + "XXL" != own.cameraType) {
        return fmt::format("it was made for the camera type '{}', and this applet serves '{}'", theirs.cameraType,
                           own.cameraType);
    }
    if (text.find("\r\n") != std::string::npos) return "its lines end in carriage return and line feed";
    return "its section [Kamerasektion] has no line 'AktivePort=0;'";
}

void checkLength(const fs::path& file) {
    if (file.string().size() <= kLongestLutName) return;
    throw ToolError(kExitUsage, fmt::format("the LUT file {} cannot be used: its name has {} bytes, and the applet "
                                            "keeps {}; use a shorter path",
                                            file.string(), file.string().size(), kLongestLutName));
}

/// \return the applet's answer to the file action
int runLutAction(host::Grabber& grabber, const fs::path& file, int action) {
    const int code = grabber.write(FG_KNEE_LUT_FILE, file.string());
    return code < 0 ? code : grabber.write(FG_KNEE_LUT_SAVE_LOAD_FILE, action);
}

}  // namespace

void checkName(const fs::path& file, const AppletFileKind& kind) {
    if (fits(file.string(), kind)) return;
    throw ToolError(kExitUsage,
                    fmt::format("the {} '{}' cannot be used: {}", kind.name, file.string(), nameComplaint(kind)));
}

void checkReadable(const fs::path& file, const AppletFileKind& kind) {
    checkName(file, kind);
    const std::string complaint = readComplaint(file);
    if (complaint.empty()) return;
    throw ToolError(kExitEnvironment, fmt::format("cannot read the {} {}: {}", kind.name, file.string(), complaint));
}

void loadConfiguration(host::Grabber& grabber, const fs::path& file) {
    checkReadable(file, kConfigurationFile);
    const int code = grabber.loadConfig(file);
    if (code >= 0) return;
    const std::string reason =
        code == FG_FILE_REJECTED ? headerComplaint(grabber, file) : host::describeResultCode(code);
    throw ToolError(kExitEnvironment, fmt::format("the configuration file {} was refused: {}; 'quillon save NEW.mcf' "
                                                  "makes one that this applet loads (code {})",
                                                  file.string(), reason, code));
}

void saveConfiguration(const host::Grabber& grabber, const fs::path& file) {
    checkName(file, kConfigurationFile);
    FileBeside beside(file, kConfigurationFile.ending);
    const int code = grabber.saveConfig(beside.temporary());
    if (code < 0) throw ToolError(kExitEnvironment, savedWhy(file, code));
    beside.complete();
}

std::string savedText(const host::Grabber& grabber) {
    const ScratchFolder folder;
    const fs::path file = folder.file("state.mcf");
    const int code = grabber.saveConfig(file);
    if (code < 0) throw ToolError(kExitEnvironment, savedWhy(file, code));
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void loadLut(host::Grabber& grabber, const fs::path& file) {
    checkReadable(file, kLutFile);
    checkLength(file);
    const int code = runLutAction(grabber, file, kLoadAction);
    if (code < 0) throw ToolError(kExitRefused, explainLutAction(grabber, kLoadAction, code));
}

void saveLut(host::Grabber& grabber, const fs::path& file) {
    checkName(file, kLutFile);
    FileBeside beside(file, kLutFile.ending);
    checkLength(beside.temporary());
    const int code = runLutAction(grabber, beside.temporary(), kSaveAction);
    if (code < 0) throw ToolError(kExitEnvironment, savedWhy(file, code));
    beside.complete();
}

std::string explainLutAction(const host::Grabber& grabber, int action, int code) {
    std::string name;
    if (grabber.read(FG_KNEE_LUT_FILE, name) < 0) name.clear();
    const char* verb = action == kLoadAction ? "load" : "save";
    std::string reason = host::describeResultCode(code);
    if (code == FG_FILE_REJECTED || code == FG_FILE_NOT_ACCESSIBLE) {
        const std::string complaint = action == kLoadAction ? readComplaint(name) : "";
        if (name.find_first_not_of(' ') == std::string::npos) {
            reason = "FG_KNEE_LUT_FILE names no file; set it first, for example FG_KNEE_LUT_FILE=curve.lut";
        } else if (!fits(name, kLutFile)) {
            reason = nameComplaint(kLutFile);
        } else if (!complaint.empty()) {
            reason = complaint + "; set FG_KNEE_LUT_FILE to a file that can be read";
        } else if (action != kLoadAction) {
            reason = "it cannot be written; check its folder, its rights and the room on its disk";
        }
    }
    return fmt::format("cannot {} the LUT file '{}': {} (code {})", verb, name, reason, code);
}

}  // namespace quillon::tool
