#include <gmock/gmock.h>
#include <gtest/gtest.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

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

class DesignImageTest : public testing::Test {
protected:
    void put32(size_t offset, uint32_t value) {
        for (size_t i = 0; i < 4; ++i) mImage[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
    void repairChecksum() {
        put32(44, 0);
        put32(44, static_cast<uint32_t>(XXH3_64bits(mImage.data(), mImage.size())));
    }
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
        {8,       1,          "version 1"         },
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
