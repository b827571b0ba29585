#include <array>
#include <cstring>
#include <map>

#include "tests/core/GrabberTest.h"

namespace {

// Every question of the interface and some that it does not have, by their results.
const std::map<int, std::vector<int>> kQuestions{
    {0,     {848, 1041, 1043, 2160, 2192, 2560, 3072, 4096, 4112, 4128, 4144, 4160, 4176}                        },
    {1,     {1792, 1872, 1888, 2816, 3328}                                                                       },
    {2626,  {2176}                                                                                               },
    {65537, {2048}                                                                                               },
    {-2130,
     {1040, 1042, 1044, 1045, 4192, 4208, 4352, 4608, 4624, 4640, 4656, 4672, 4688, 4704, 0, -1, 849, 2147483647}},
};

int info(int code, int arg1 = 0, void* vptr = nullptr, const void** vptrptr = nullptr) {
    return Info(static_cast<AppletInfos>(code), arg1, 0, vptr, vptrptr);
}

TEST(AppletInfoTest, EveryQuestionHasItsResultWithAndWithoutTargets) {
    for (const auto& [result, codes] : kQuestions) {
        for (const int code : codes) {
            EXPECT_EQ(info(code), result) << code;
            std::array<unsigned char, 16> number{};
            const void* pointer = nullptr;
            EXPECT_EQ(info(code, 0, number.data(), &pointer), result) << code;
        }
    }
}

TEST(AppletInfoTest, TextsAndNullsGoToThePointerTarget) {
    static const char kUntouched[] = "untouched";
    const std::pair<int, const char*> texts[] = {
        {4096, "Acquisition with one FULL configuration greyscale area scan camera"     },
        {4128, "class=acquisition,type=single,sensortype=area,color=gray,interface=full"},
        {4176, "QuillonCam_Greyscale_8bit"                                              },
        {2160, nullptr                                                                  },
        {4112, nullptr                                                                  },
        {848,  kUntouched                                                               },
        {2176, kUntouched                                                               },
        {4192, kUntouched                                                               },
        {4144, kUntouched                                                               },
    };
    for (const auto& [code, expected] : texts) {
        const void* answer = kUntouched;
        info(code, 0, nullptr, &answer);
        EXPECT_STREQ(static_cast<const char*>(answer), expected) << code;
    }
}

TEST(AppletInfoTest, DesignIdentifierHasGuidForm) {
    const void* answer = nullptr;
    ASSERT_EQ(info(1043, 0, nullptr, &answer), 0);
    const std::string text = static_cast<const char*>(answer);
    ASSERT_EQ(text.size(), 36U);
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_TRUE(isHyphen ? text[i] == '-' : std::strchr("0123456789abcdef", text[i]) != nullptr) << i;
    }
}

TEST(AppletInfoTest, IconIsAPngOfTheStatedShape) {
    int size = 0;
    const void* data = nullptr;
    ASSERT_EQ(info(1041, 5, &size, &data), 0);
    ASSERT_EQ(size, 1757);
    const auto* bytes = static_cast<const unsigned char*>(data);
    // Signature, header chunk, 32 x 32 pixels of 8-bit RGBA, and the end chunk as the last twelve bytes.
    const unsigned char head[] = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0,  13, 'I',
                                  'H',  'D', 'R', 0,   0,  0,  32, 0,  0, 0, 32, 8,  6};
    EXPECT_EQ(std::memcmp(bytes, head, sizeof head), 0);
    EXPECT_EQ(std::memcmp(bytes + 1757 - 8, "IEND", 4), 0);
    int sizeAlone = 0;
    EXPECT_EQ(info(1041, 0, &sizeAlone, nullptr), 0);
    EXPECT_EQ(sizeAlone, 1757);
    const void* dataAlone = nullptr;
    EXPECT_EQ(info(1041, 0, nullptr, &dataAlone), 0);
    EXPECT_EQ(dataAlone, data);
}

TEST(AppletInfoTest, PortCountDependsOnThePortType) {
    for (const auto& [type, result] : {
             std::pair{0,          1    },
             {1,          0    },
             {2,          -2070},
             {-1,         -2070},
             {2147483647, -2070}
    }) {
        EXPECT_EQ(info(1792, type), result) << type;
    }
}

using AppletInfoGrabberTest = GrabberTest;

TEST_F(AppletInfoGrabberTest, HandlesAreThoseOfTheMostRecentEntry) {
    ASSERT_EQ(open(), 0);
    void* handles[2] = {};
    EXPECT_EQ(info(4144, 0, &handles[0]), 0);
    EXPECT_EQ(info(4160, 0, &handles[1]), 0);
    EXPECT_EQ(handles[0], FakeBoard::device());
    EXPECT_EQ(handles[1], FakeBoard::design());

    int err = 0;
    int other = 0;
    auto* const slave = reinterpret_cast<FgDevice*>(&other);
    EXPECT_EQ(Std_entry(slave, &err, 1), nullptr);
    EXPECT_EQ(err, -2070);
    EXPECT_EQ(info(4144, 0, &handles[0]), 0);
    EXPECT_EQ(info(4160, 0, &handles[1]), 0);
    EXPECT_EQ(handles[0], slave);
    EXPECT_EQ(handles[1], FakeBoard::design());
    EXPECT_THAT(board.events, testing::IsEmpty());

    board.embeddedDesign = nullptr;
    free();
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(info(4160, 0, &handles[1]), 0);
    EXPECT_EQ(handles[1], nullptr);
}

}  // namespace
