#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::tool {

/// What a configuration file says about the camera that it was made for. Empty where the file does not say it.
struct ConfigHeader {
    std::string manufacturer;
    std::string cameraType;
};

/// One parameter of a configuration file.
struct ConfigLine {
    std::string key;    ///< for example "FG_WIDTH"
    std::string value;  ///< without quotes and the closing semicolon
};

/// The parameters of both ports in the order of the file.
using ConfigSections = std::array<std::vector<ConfigLine>, 2>;

/// Reads the header as the applet does, whatever the text may be. Bytes that cannot be printed become question marks,
/// and long texts are cut.
ConfigHeader readHeader(std::string_view text);

/// Takes apart what the applet has written.
ConfigSections readSections(std::string_view text);

}  // namespace quillon::tool
