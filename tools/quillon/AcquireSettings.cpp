#include "AcquireSettings.h"

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <filesystem>
#include <system_error>

#include "FileBeside.h"
#include "PictureFiles.h"
#include "ToolError.h"

namespace quillon::tool {

void addOptions(CLI::App& options, AcquireSettings& settings) {
    options.add_option("-n,--count", settings.count, "pictures to acquire, 1 by itself; 0 goes on until Ctrl-C")
        ->check(CLI::Range(0, kEndless))
        ->type_name("COUNT");
    options
        .add_option("--output", settings.output,
                    "save the pictures; %d or %03d stands for the picture's number, and the ending, .png, .pgm, .tif "
                    "or .raw, for the format; without a number, .tif gets a page and .raw a part for each picture; "
                    "the folder is created")
        ->type_name("PATTERN");
    options.add_flag("--compress", settings.isCompressed,
                     "make PNG files as small as possible; takes many times longer");
    options.add_option("--histogram", settings.histogram, "save a PNG file with the last picture and its histogram")
        ->type_name("FILE");
    options.add_option("--buffers", settings.buffers, "buffers that the board fills in turn")
        ->check(CLI::Range(1, 1 << 20))
        ->type_name("COUNT");
    options.add_option("--timeout", settings.timeout, "longest wait for a picture, in seconds")
        ->check(CLI::Range(1, 1'000'000))
        ->type_name("SECONDS")
        ->capture_default_str();
    options.add_flag("--json", settings.isJson, "print the report as JSON");
}

void checkSettings(const AcquireSettings& settings) {
    const bool isOne = settings.pictures() == 1;
    if (settings.buffers == 1 && !isOne) {
        throw ToolError(kExitUsage, "a single buffer serves a single picture; use --buffers 2 or more");
    }
    if (!settings.output.empty() && !PictureFiles(settings.output).takesMany() && !isOne) {
        throw ToolError(kExitUsage, fmt::format("the output '{}' has no place for the picture's number; write for "
                                                "example frame_%03d.png",
                                                settings.output));
    }
    if (settings.histogram.empty()) return;
    const std::filesystem::path file = settings.histogram;
    if (file.extension() != ".png") {
        throw ToolError(kExitUsage, fmt::format("the histogram '{}' is a PNG file; write for example histogram.png",
                                                settings.histogram));
    }
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored)) refuseFile(file, ENOENT);
}

}  // namespace quillon::tool
