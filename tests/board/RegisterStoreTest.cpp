#include <gtest/gtest.h>

#include "simulation/board/BoardCodes.h"
#include "simulation/board/RegisterStore.h"

using namespace simulation;

namespace {

class RegisterStoreTest : public testing::Test {
protected:
    RegisterStoreTest() {
        mStore.configure({
            2626, {{"One", 1, 1, 1}, {"Twelve", 12, 1, 0}, {"Status", 32, 2, 9}, {"Wide", 64, 1, 0}},
             {}
        });
    }
    uint64_t read(int handle) {
        uint64_t value = 0xBAD;
        EXPECT_EQ(mStore.read(handle, value), 0);
        return value;
    }

    RegisterStore mStore;
};

TEST_F(RegisterStoreTest, CutsValuesToTheWidth) {
    EXPECT_EQ(mStore.write(1, 2), 0);
    EXPECT_EQ(read(1), 0u);
    EXPECT_EQ(mStore.write(2, 0x1FFF), 0);
    EXPECT_EQ(read(2), 0xFFFu);
    EXPECT_EQ(mStore.write(4, 0xFFFFFFFFFFFFFFFF), 0);
    EXPECT_EQ(read(4), 0xFFFFFFFFFFFFFFFF);
}

TEST_F(RegisterStoreTest, RefusesWhatHardwareRefuses) {
    uint64_t value = 0xBAD;
    for (const int handle : {0, -1, 5, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(mStore.write(handle, 1), -9002) << handle;
        EXPECT_EQ(mStore.read(handle, value), -9002) << handle;
        EXPECT_EQ(mStore.valueOf(handle), 0u);
        EXPECT_EQ(mStore.nameOf(handle), "");
    }
    EXPECT_EQ(value, 0xBADu);
    EXPECT_EQ(mStore.write(3, 1), -9003);
    EXPECT_EQ(read(3), 9u);
}

TEST_F(RegisterStoreTest, ConfiguringRestoresInitialValues) {
    EXPECT_EQ(mStore.find("Twelve"), 2);
    EXPECT_EQ(mStore.find("twelve"), 0);
    EXPECT_EQ(mStore.write(1, 0), 0);
    mStore.configure({2626, {{"One", 1, 1, 1}}, {}});
    EXPECT_EQ(read(1), 1u);
    EXPECT_EQ(mStore.find("Twelve"), 0);
    EXPECT_EQ(mStore.write(2, 0), -9002);
}

}  // namespace
