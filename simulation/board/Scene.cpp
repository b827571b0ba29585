#include "simulation/board/Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace simulation {

namespace {

/// Digits of 5 x 7 dots; the highest of the five bits is the left dot.
constexpr std::array<std::array<uint8_t, 7>, 10> kDigits{
    {
     {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E},
     {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E},
     {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F},
     {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E},
     {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02},
     {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E},
     {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E},
     {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08},
     {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E},
     {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C},
     }
};
constexpr uint32_t kDigitWidth = 6;  // dots, the gap to the next digit included
constexpr uint32_t kDigitHeight = 7;

uint8_t shade(double value) { return static_cast<uint8_t>(std::clamp(value, 0.0, 255.0)); }

/// Rings about the middle on a slope of gray: fine detail everywhere, and no two lines alike.
uint8_t backgroundAt(double x, double y, PictureSize size) {
    const double dx = x - size.width / 2.0;
    const double dy = y - size.height / 2.0;
    const double reach = std::hypot(size.width, size.height) / 2.0;
    const double rings = std::cos(40.0 * std::pow(std::hypot(dx, dy) / reach, 1.5));
    return shade(96.0 + 40.0 * rings + 50.0 * x / size.width - 30.0 * y / size.height);
}

/// Each corner has stripes of its own direction, so that a picture that is turned or cut wrongly is seen at once.
bool cornerStripe(uint32_t x, uint32_t y, bool atRight, bool atBottom, uint32_t pitch) {
    if (!atRight && !atBottom) return ((x / pitch) + (y / pitch)) % 2 == 0;
    if (!atBottom) return (x / pitch) % 2 == 0;
    if (!atRight) return (y / pitch) % 2 == 0;
    return ((x + y) / pitch) % 2 == 0;
}

Picture makeBackground(PictureSize size) {
    Picture picture{size, std::vector<uint8_t>(static_cast<size_t>(size.pixels()))};
    const uint32_t corner = std::max(4u, std::min(size.width, size.height) / 8);
    const uint32_t pitch = std::max(1u, corner / 16);
    for (uint32_t y = 0; y < size.height; ++y) {
        uint8_t* const line = picture.line(y);
        const bool atBottom = y >= size.height - corner;
        const bool atEdge = y < corner || atBottom;
        for (uint32_t x = 0; x < size.width; ++x) {
            const bool atRight = x >= size.width - corner;
            if (atEdge && (x < corner || atRight)) {
                line[x] = cornerStripe(x, y, atRight, atBottom, pitch) ? 235 : 20;
            } else {
                line[x] = backgroundAt(x, y, size);
            }
        }
    }
    return picture;
}

/// A ball, lit from the upper left, on black.
Picture makeBall(PictureSize scene) {
    const uint32_t diameter = std::max(4u, std::min(scene.width, scene.height) / 10);
    Picture ball{
        {diameter, diameter},
        std::vector<uint8_t>(size_t{diameter}
        * diameter)
    };
    const double radius = diameter / 2.0;
    for (uint32_t y = 0; y < diameter; ++y) {
        for (uint32_t x = 0; x < diameter; ++x) {
            const double dx = (x + 0.5) / radius - 1.0;
            const double dy = (y + 0.5) / radius - 1.0;
            if (dx * dx + dy * dy > 1.0) continue;
            ball.line(y)[x] = shade(250.0 - 150.0 * std::hypot(dx + 0.35, dy + 0.35));
        }
    }
    return ball;
}

/// A position that runs to and fro between 0 and \p range.
uint32_t bounce(uint64_t steps, uint32_t range) {
    if (range == 0) return 0;
    const auto phase = static_cast<uint32_t>(steps % (uint64_t{2} * range));
    return phase <= range ? phase : 2 * range - phase;
}

}  // namespace

std::unique_ptr<Scene> Scene::create(PictureSize size, std::string& why) {
    if (size.width < kSmallestSide || size.height < kSmallestSide || size.width > kLargestSide ||
        size.height > kLargestSide || size.pixels() > kMostPixels) {
        why = "a scene of " + std::to_string(size.width) + "x" + std::to_string(size.height) +
              " pixels cannot be had: each side is " + std::to_string(kSmallestSide) + " to " +
              std::to_string(kLargestSide) + ", and there are at most " + std::to_string(kMostPixels) + " pixels";
        return nullptr;
    }
    return std::unique_ptr<Scene>(new Scene(makeBackground(size)));
}

Scene::Scene(Picture background)
    : mBackground(std::move(background)), mBallPicture(makeBall(mBackground.size)), mFrame(mBackground) {}

const Picture& Scene::frame(uint64_t number) {
    restore(mBall);
    restore(mNumber);
    mBall = drawBall(number);
    mNumber = drawNumber(number);
    return mFrame;
}

void Scene::restore(const Area& area) {
    for (uint32_t y = area.y; y < area.y + area.size.height; ++y) {
        std::copy_n(mBackground.line(y) + area.x, area.size.width, mFrame.line(y) + area.x);
    }
}

Scene::Area Scene::drawBall(uint64_t number) {
    const PictureSize ball = mBallPicture.size;
    const Area area{bounce(number * 7, size().width - ball.width), bounce(number * 5, size().height - ball.height),
                    ball};
    for (uint32_t y = 0; y < ball.height; ++y) {
        const uint8_t* const from = mBallPicture.line(y);
        uint8_t* const line = mFrame.line(area.y + y) + area.x;
        for (uint32_t x = 0; x < ball.width; ++x) line[x] = from[x] != 0 ? from[x] : line[x];
    }
    return area;
}

Scene::Area Scene::drawNumber(uint64_t number) {
    const std::string digits = std::to_string(number);
    const uint32_t dot = std::max(1u, size().height / 128);
    const auto width = static_cast<uint32_t>(digits.size()) * kDigitWidth * dot;
    const uint32_t height = kDigitHeight * dot;
    const uint32_t y0 = size().height / 8 + dot;
    const uint32_t x0 = size().width / 8 + dot;
    if (x0 + width > size().width || y0 + height > size().height) return {};
    for (uint32_t y = 0; y < height; ++y) {
        uint8_t* const line = mFrame.line(y0 + y) + x0;
        for (uint32_t x = 0; x < width; ++x) {
            const uint32_t column = x / dot % kDigitWidth;
            const char digit = digits[x / dot / kDigitWidth];
            const unsigned row = kDigits[static_cast<size_t>(digit - '0')][y / dot];
            const bool isSet = column < 5 && (row >> (4 - column) & 1u) != 0;
            line[x] = isSet ? 255 : 0;
        }
    }
    return {
        x0, y0, {width, height}
    };
}

}  // namespace simulation
