#include "PictureWindow.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "Memory.h"
#include "ToolError.h"
#include "fabrix/parameter_ids.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

constexpr int kGray8 = 3;

uint32_t readPixels(const host::Grabber& grabber, int id, const char* name) {
    int32_t value = 0;
    const int code = grabber.read(id, value);
    if (code < 0 || value < 1) {
        throw ToolError(kExitRefused,
                        fmt::format("{} cannot be used: value {}, {}", name, value, host::describeResultCode(code)));
    }
    return static_cast<uint32_t>(value);
}

}  // namespace

PictureWindow readWindow(const host::Grabber& grabber) {
    // An applet without FG_FORMAT delivers 8-bit gray.
    const int32_t format = readOr(grabber, FG_FORMAT, kGray8);
    if (format != kGray8) {
        throw ToolError(kExitUsage,
                        fmt::format("FG_FORMAT = {} cannot be acquired by this tool; set FG_FORMAT=FG_GRAY", format));
    }
    return {readPixels(grabber, FG_WIDTH, "FG_WIDTH"), readPixels(grabber, FG_HEIGHT, "FG_HEIGHT")};
}

void checkMemory(const PictureWindow& window, frameindex_t pictures) {
    const uint64_t available = availableMemory();
    const uint64_t needed = window.bytes() * static_cast<uint64_t>(pictures);
    if (needed <= available && needed <= std::numeric_limits<size_t>::max()) return;
    throw ToolError(
        kExitEnvironment,
        fmt::format("the window of {} x {} pixels needs {} of memory ({} buffers of {}), and {} are "
                    "available; set a smaller FG_WIDTH or FG_HEIGHT, or fewer --buffers",
                    window.width, window.height, formatBytes(static_cast<double>(needed)), pictures,
                    formatBytes(static_cast<double>(window.bytes())), formatBytes(static_cast<double>(available))));
}

uint32_t framesPerPicture(const host::Grabber& grabber) {
    return static_cast<uint32_t>(std::max(readOr(grabber, FG_IMG_SELECT_PERIOD, 1), 1));
}

int32_t readOr(const host::Grabber& grabber, int id, int32_t otherwise) {
    int32_t value = 0;
    return grabber.read(id, value) < 0 ? otherwise : value;
}

}  // namespace quillon::tool
