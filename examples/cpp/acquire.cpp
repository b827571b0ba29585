// Acquires pictures with the host library and prints their mean brightness.
// usage: acquire APPLET PICTURES
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <numeric>
#include <string>

#include "host/Acquisition.h"
#include "host/AppletLibrary.h"
#include "host/BufferSet.h"
#include "host/Grabber.h"
#include "host/HostError.h"
#include "host/ResultCodes.h"

using namespace quillon::host;

namespace {

constexpr int32_t kWidth = 640;
constexpr int32_t kHeight = 480;
constexpr int kTimeoutSeconds = 5;

void require(int code, const std::string& what) {
    if (code < 0) throw HostError(code, what + ": " + describeResultCode(code));
}

double meanOf(const Frame& frame) {
    const auto sum =
        std::accumulate(frame.bytes.begin(), frame.bytes.end(), uint64_t{0},
                        [](uint64_t total, std::byte pixel) { return total + std::to_integer<unsigned>(pixel); });
    return frame.bytes.empty() ? 0.0 : static_cast<double>(sum) / static_cast<double>(frame.bytes.size());
}

void run(const std::string& path, frameindex_t pictures) {
    const AppletLibrary applet(path);
    Grabber grabber(applet);
    std::cout << "applet: " << applet.infoText(GET_INFO_FRIENDLY_NAME) << "\n";

    require(grabber.write(FG_WIDTH, kWidth), "the width");
    require(grabber.write(FG_HEIGHT, kHeight), "the height");
    // A width that is no multiple of the step shows what a refusal looks like.
    std::cout << "a width of 500: " << describeResultCode(grabber.write(FG_WIDTH, 500)) << "\n";
    int32_t width = 0;
    require(grabber.read(FG_WIDTH, width), "the width");
    std::cout << "width: " << width << "\n";

    const BufferSet buffers(grabber, size_t{kWidth} * kHeight, 8);
    Acquisition acquisition(grabber, buffers, pictures);
    for (frameindex_t number = 1; number <= pictures; ++number) {
        require(acquisition.waitFor(number, kTimeoutSeconds), "picture " + std::to_string(number));
        const Frame frame = acquisition.frame(number);
        const double mean = meanOf(frame);
        if (acquisition.isOverwritten(number)) continue;
        std::cout << "picture " << number << ": " << frame.length << " bytes, mean " << mean << "\n";
    }
    require(acquisition.stop(), "the stop");
}

}  // namespace

int main(int argc, char** argv) {
    const long pictures = argc == 3 ? std::strtol(argv[2], nullptr, 10) : 0;
    if (pictures < 1 || pictures > INT32_MAX) {
        std::cerr << "usage: acquire APPLET PICTURES\n";
        return 2;
    }
    try {
        run(argv[1], static_cast<frameindex_t>(pictures));
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
