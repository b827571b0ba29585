#include <gtest/gtest.h>

#include "simulation/design/DesignImage.h"
#include "simulation/design/DesignLoader.h"
#include "tests/TemporaryFolder.h"

using namespace simulation;

namespace {

class DesignLoaderTest : public testing::Test {
protected:
    const Design mDesign{2626, {{"AAReset", 1, 1, 0}}, {{"DESIGN_NAME", "Quillon"}}};
    const std::vector<uint8_t> mImage = encodeImage(mDesign, 4096);
    DesignLoader mLoader;
};

TEST_F(DesignLoaderTest, KnowsItsOwnHandlesOnly) {
    fpga_design* const handle = mLoader.load(mImage, 2626);
    ASSERT_NE(handle, nullptr);
    ASSERT_NE(mLoader.find(handle), nullptr);
    EXPECT_EQ(*mLoader.find(handle), mDesign);
    EXPECT_EQ(fpga_design::designOf(handle), mLoader.find(handle));

    const fpga_design copy = *handle;
    EXPECT_EQ(mLoader.find(&copy), nullptr);
    EXPECT_EQ(fpga_design::designOf(&copy), nullptr);
    EXPECT_EQ(mLoader.find(nullptr), nullptr);
    EXPECT_EQ(fpga_design::designOf(nullptr), nullptr);

    EXPECT_FALSE(mLoader.isIdle());
    EXPECT_TRUE(mLoader.unload(handle));
    EXPECT_EQ(mLoader.find(handle), nullptr);
    EXPECT_EQ(fpga_design::designOf(handle), nullptr) << "an unloaded handle stays readable and is refused";
    EXPECT_FALSE(mLoader.unload(handle));
    EXPECT_TRUE(mLoader.isIdle());
}

TEST_F(DesignLoaderTest, FindsABareNameInTheDesignFolder) {
    const TemporaryFolder folder;
    folder.write("Quilmo.stdhap", {mImage.begin(), mImage.end()});
    folder.write("broken.stdhap", {mImage.begin(), mImage.end() - 1});
    EXPECT_NE(mLoader.loadFile("Quilmo.stdhap", folder.path(), 2626), nullptr);
    EXPECT_NE(mLoader.loadFile(folder.path() / "Quilmo.stdhap", "", 2626), nullptr);
    EXPECT_EQ(mLoader.loadFile("Quilmo.stdhap", "", 2626), nullptr);
    EXPECT_EQ(mLoader.loadFile("Quilmo.stdhap", folder.path(), 2627), nullptr);
    EXPECT_EQ(mLoader.loadFile("./Quilmo.stdhap", folder.path(), 2626), nullptr);
    EXPECT_EQ(mLoader.loadFile("broken.stdhap", folder.path(), 2626), nullptr);
    EXPECT_EQ(mLoader.loadFile(folder.path(), "", 2626), nullptr) << "a folder is no design";
    EXPECT_EQ(mLoader.loadFile("/dev/zero", "", 2626), nullptr);
}

}  // namespace
