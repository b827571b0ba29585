#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "simulation/design/DesignImage.h"

using namespace simulation;
using testing::HasSubstr;

namespace {

Design smallDesign() {
    return {
        2626,
        {{"AAReset", 1, 1, 0}, {"AABufferStatus", 32, 2, 7}, {"Wide", 64, 1, 0xFFFFFFFFFFFFFFFF}},
        {{"DESIGN_NAME", "Quillon"}, {"EMPTY", ""}}
    };
}

/// A CRC-32 of its own, bit by bit, so that a damaged image can be given a sound checksum.
uint32_t crc32(const std::vector<uint8_t>& image) {
    uint32_t crc = 0xFFFFFFFF;
    for (size_t i = 0; i < image.size(); ++i) {
        crc ^= i >= 44 && i < 48 ? 0u : image[i];
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0u);
    }
    return ~crc;
}

class DesignImageTest : public testing::Test {
protected:
    void put32(size_t offset, uint32_t value) {
        for (size_t i = 0; i < 4; ++i) mImage[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
    void repairChecksum() { put32(44, crc32(mImage)); }
    std::optional<Design> parse() { return parseImage(mImage, mWhy); }

    std::vector<uint8_t> mImage = encodeImage(smallDesign(), 600);
    std::string mWhy;
};

TEST_F(DesignImageTest, KeepsEveryFactAndRefusesAnotherSize) {
    for (size_t length = 0; length < mImage.size(); ++length) {
        EXPECT_FALSE(parseImage(std::span(mImage).first(length), mWhy)) << length;
    }
    EXPECT_EQ(parse(), smallDesign());
    EXPECT_EQ(parseImage(encodeImage({1, {}, {}}, 0), mWhy), (Design{1, {}, {}}));
    mImage.push_back(0);
    EXPECT_FALSE(parse());
}

TEST_F(DesignImageTest, RefusesEveryDamagedByte) {
    for (size_t i = 0; i < mImage.size(); ++i) {
        mImage[i] ^= 0x40;
        EXPECT_FALSE(parse()) << i;
        mImage[i] ^= 0x40;
    }
    EXPECT_TRUE(parse());
}

TEST_F(DesignImageTest, RefusesFaultyFieldsUnderASoundChecksum) {
    const std::vector<uint8_t> sound = mImage;
    // offset, value, reason: header fields first, then the first register row at 64 and the first information at 136
    const std::tuple<size_t, uint32_t, const char*> faults[]{
        {0,       0x12345678, "not a design image"},
        {8,       2,          "version 2"         },
        {12,      601,        "should have 601"   },
        {20,      0xFFFFFFFF, "table lies outside"},
        {24,      0,          "table lies outside"},
        {32,      601,        "table lies outside"},
        {40,      1,          "text lies outside" },
        {52,      1,          "reserved field"    },
        {64,      0x7FFFFFFF, "text lies outside" },
        {68,      0,          "width"             },
        {72,      0,          "direction"         },
        {80,      2,          "initial value"     },
        {64 + 24, 0,          "used twice"        },
    };
    for (const auto& [offset, value, reason] : faults) {
        SCOPED_TRACE(testing::Message() << offset << " = " << value);
        mImage = sound;
        put32(offset, value);
        repairChecksum();
        EXPECT_FALSE(parse());
        EXPECT_THAT(mWhy, HasSubstr(reason));
    }
}

}  // namespace
