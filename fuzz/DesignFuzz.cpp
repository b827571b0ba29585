// Design images of any content. An odd first byte lets size and checksum be put right, so that the tables behind them
// are reached.
#define XXH_INLINE_ALL
#include <xxhash.h>

#include "fuzz/Scratch.h"
#include "simulation/design/DesignImage.h"

namespace {

constexpr size_t kHeader = 64;
constexpr size_t kSizeField = 12;
constexpr size_t kChecksumField = 44;

void put(std::vector<uint8_t>& image, size_t at, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) image[at + i] = static_cast<uint8_t>(value >> (8 * i));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    std::vector<uint8_t> image(data + 1, data + size);
    if ((data[0] & 1) != 0 && image.size() >= kHeader) {
        put(image, kSizeField, static_cast<uint32_t>(image.size()));
        put(image, kChecksumField, 0);
        put(image, kChecksumField, static_cast<uint32_t>(XXH3_64bits(image.data(), image.size())));
    }
    std::string why;
    const std::optional<simulation::Design> design = simulation::parseImage(image, why);
    expect(design.has_value() == why.empty(), "a refusal has a reason");
    if (!design) return 0;
    expect(simulation::findFault(*design).empty(), "a design that was read has no fault");
    const std::vector<uint8_t> again = simulation::encodeImage(*design, simulation::imageSizeOf(*design));
    expect(simulation::parseImage(again, why).has_value(), "what was read can be written and read again");
    return 0;
}
