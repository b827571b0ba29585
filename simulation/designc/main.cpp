// designc: compiles the text form of a design into the image that the applet runtime library loads.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/design/DesignImage.h"
#include "simulation/design/DesignText.h"
#include "simulation/support/Numbers.h"

namespace {

constexpr std::string_view kUsage =
    "usage: designc [--size BYTES] DESIGN IMAGE\n"
    "Compiles the design description DESIGN into the file IMAGE; --size fills it up to BYTES bytes.\n";

struct Arguments {
    std::string design;
    std::string image;
    size_t size = 0;
};

std::optional<Arguments> parseArguments(const std::vector<std::string>& words) {
    Arguments arguments;
    size_t next = 0;
    if (words.size() == 4 && words[0] == "--size") {
        const auto size = simulation::parseNumber<size_t>(words[1]);
        if (!size) return std::nullopt;
        arguments.size = *size;
        next = 2;
    }
    if (words.size() != next + 2 || words[next].starts_with("--")) return std::nullopt;
    arguments.design = words[next];
    arguments.image = words[next + 1];
    return arguments;
}

int fail(const std::string& text) {
    std::cerr << "designc: " << text << '\n';
    return 1;
}

int compile(const Arguments& arguments) {
    std::ifstream input(arguments.design, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(input), {}};
    if (!input) return fail(arguments.design + ": cannot be read");
    std::string why;
    const auto design = simulation::parseDesignText(text, why);
    if (!design) return fail(arguments.design + ": " + why);
    const size_t needed = simulation::imageSizeOf(*design);
    if (arguments.size != 0 && arguments.size < needed) {
        return fail(arguments.design + ": the image needs " + std::to_string(needed) + " bytes, and --size allows " +
                    std::to_string(arguments.size));
    }
    const std::vector<uint8_t> image = simulation::encodeImage(*design, arguments.size);
    std::ofstream output(arguments.image, std::ios::binary | std::ios::trunc);
    output.write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
    output.close();
    if (!output) return fail(arguments.image + ": cannot be written");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const auto arguments = parseArguments({argv + 1, argv + argc});
    if (!arguments) {
        std::cerr << kUsage;
        return 2;
    }
    try {
        return compile(*arguments);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
