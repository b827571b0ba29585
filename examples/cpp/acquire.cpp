// Acquires pictures with the host library and prints their mean brightness.
// usage: acquire APPLET PICTURES [BOARD]
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <numeric>
#include <string>

#include "host/AppletLibrary.h"
#include "host/BufferSet.h"
#include "host/FrameLoop.h"
#include "host/Grabber.h"
#include "host/HostError.h"
#include "host/ResultCodes.h"
#include "host/RuntimeLibraries.h"

using namespace quillon::host;

namespace {

constexpr int32_t kWidth = 640;
constexpr int32_t kHeight = 480;

void require(int code, const std::string& what) {
    if (code < 0) throw HostError(code, what + ": " + describeResultCode(code));
}

double meanOf(const Frame& frame) {
    const auto sum =
        std::accumulate(frame.bytes.begin(), frame.bytes.end(), uint64_t{0},
                        [](uint64_t total, std::byte pixel) { return total + std::to_integer<unsigned>(pixel); });
    return frame.bytes.empty() ? 0.0 : static_cast<double>(sum) / static_cast<double>(frame.bytes.size());
}

void run(const std::string& path, frameindex_t pictures, int board) {
    const AppletLibrary applet(path);
    Grabber grabber(applet, boardDevice(applet, board));
    std::cout << "applet: " << applet.infoText(GET_INFO_FRIENDLY_NAME) << "\n";

    require(grabber.write(FG_WIDTH, kWidth), "the width");
    require(grabber.write(FG_HEIGHT, kHeight), "the height");
    // A width that is no multiple of the step shows what a refusal looks like.
    std::cout << "a width of 500: " << describeResultCode(grabber.write(FG_WIDTH, 500)) << "\n";
    int32_t width = 0;
    require(grabber.read(FG_WIDTH, width), "the width");
    std::cout << "width: " << width << "\n";

    const BufferSet buffers(grabber, size_t{kWidth} * kHeight, 8);
    const FrameLoopReport report = acquireFrames(grabber, buffers, {.frames = pictures}, [](const Frame& frame) {
        std::cout << "picture " << frame.number << ": " << frame.length << " bytes, mean " << meanOf(frame) << "\n";
        return true;
    });
    require(report.code, "picture " + std::to_string(report.delivered + report.overwritten + 1));
    std::cout << "lost: " << report.lost() << "\n";
}

}  // namespace

int main(int argc, char** argv) {
    const bool isComplete = argc == 3 || argc == 4;
    const long pictures = isComplete ? std::strtol(argv[2], nullptr, 10) : 0;
    const int board = argc == 4 ? std::atoi(argv[3]) : 0;
    if (pictures < 1 || pictures > INT32_MAX) {
        std::cerr << "usage: acquire APPLET PICTURES [BOARD]\n";
        return 2;
    }
    try {
        run(argv[1], static_cast<frameindex_t>(pictures), board);
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
