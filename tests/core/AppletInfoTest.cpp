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

}  // namespace
