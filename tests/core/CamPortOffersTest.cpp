// What the camera port publishes, by the camera that it is made for.
#include "tests/core/CamPortFixture.h"

namespace {

TEST_F(CamPortTest, ColorCameraInBaseConfigurationMapsSerialRgb) {
    PSCamPort& module = addCamera(kBaseColor);
    int position = 0;
    for (const auto& [id, name, color] : {
             std::tuple{9200, "RED",   "red"  },
             {9210, "GREEN", "green"},
             {9220, "BLUE",  "blue" }
    }) {
        EXPECT_EQ(record(id).description.defineName, std::string("FG_RGB_MAP_") + name);
        EXPECT_EQ(record(id).description.docDescription,
                  std::string("Defines the position of the ") + color + " pixel in serial rgb mode.");
        EXPECT_EQ(get(id), position++);
    }
    EXPECT_EQ(record(9210).description.parameterName, "RGB Mapping Green");
    EXPECT_EQ(entriesOf(record(9220), 0),
              "Pixel0=0 FG_MAP_PIXEL0, Pixel1=1 FG_MAP_PIXEL1, Pixel2=2 FG_MAP_PIXEL2, default 2");
    EXPECT_EQ(tree(1),
              "Output Format: Output Format, Pixel Depth, Alignment; "
              "CameraLink: Input Format, Camera type, Camport config., Use DVAL, "
              "Serial RGB Mapping (RGB Mapping Red, RGB Mapping Green, RGB Mapping Blue)");
    EXPECT_EQ(set(9200, 2), -8010);  // parallel RGB
    EXPECT_EQ(set(11011, 8), 0);
    EXPECT_EQ(writes(), "AACamPortFullFlavour 0, AACamPortBits 0, AACamPortRgb 2, BACamPortRgb 2, AACamPortDualTap 0");
    EXPECT_EQ(access(9200), 7);
    EXPECT_EQ(access(9200, 1), 1);
    EXPECT_EQ(set(9200, 2), 0);
    EXPECT_EQ(set(9210, 0), 0);
    EXPECT_EQ(set(9220, 1), 0);
    EXPECT_EQ(writes(), "AAPixelOrder 230, AAPixelOrder 226, AAPixelOrder 210");
    EXPECT_EQ(set(9200, 3), -6000);
    EXPECT_EQ(get(9220), 1);
    EXPECT_EQ(module.updateParameter(1, 9210), 0);
    EXPECT_EQ(writes(), "ABPixelOrder 228");
    EXPECT_EQ(set(11011, 500), 0);
    EXPECT_EQ(access(9210), 1);
    EXPECT_EQ(master().getCameraCategory(0), 26);
}

struct OfferRow {
    CamPortArguments camera;
    const char* inputs;
    const char* outputs;
    int configuration;  // default
    int category;
    const char* page;
};

class CamPortOffers : public CamPortTable<OfferRow> {};

TEST_P(CamPortOffers, FollowTheConfiguration) {
    const OfferRow& row = GetParam();
    PSCamPort& module = addCamera(row.camera);
    for (const unsigned port : {0u, 1u}) {
        EXPECT_EQ(entriesOf(record(11011), port), row.inputs);
        EXPECT_EQ(entriesOf(record(700), port), row.outputs);
        EXPECT_EQ(get(30000, static_cast<int>(port)), row.configuration);
        EXPECT_EQ(get(11011, static_cast<int>(port)), record(11011).data.enumData->defaultValue[port]);
        EXPECT_EQ(master().getCameraCategory(static_cast<int>(port)), row.category);
    }
    EXPECT_EQ(record(30000).data.enumData->defaultValue[0], row.configuration);
    EXPECT_EQ(module.getDocModuleURL(700), std::string("feature_blocks/PSCameraLink/PSCameraLink_") + row.page);
}

constexpr const char* kGrayEntries = "8bit=3 FG_GRAY, 16bit=1 FG_GRAY16, default 3";
constexpr const char* kColorEntries = "24bit=2 FG_COL24, 48bit=6 FG_COL48, default 2";
constexpr const char* kMediumEntries =
    "8 Bit Medium=208 FG_CL_MEDIUM_8_BIT, 10 Bit Medium=210 FG_CL_MEDIUM_10_BIT, "
    "12 Bit Medium=212 FG_CL_MEDIUM_12_BIT, default 208";

INSTANTIATE_TEST_SUITE_P(
    All, CamPortOffers,
    testing::Values(
        OfferRow{kFull,
                 "8 Bit Full 8=308 FG_CL_8BIT_FULL_8, 8 Bit Full 10(Extended)=310 FG_CL_8BIT_FULL_10, default 308",
                 "8bit=3 FG_GRAY, default 3", 2, 0, "FGray8.html"},
        OfferRow{kMedium, kMediumEntries, kGrayEntries, 1, 0, "MGray16.html"},
        OfferRow{kMediumBayer, kMediumEntries, kColorEntries, 1, 0, "MRGB36.html"},
        OfferRow{kMediumColor,
                 "30bit RGB Medium=216 FG_CL_MEDIUM_RGB_30, 36bit RGB Medium=218 FG_CL_MEDIUM_RGB_36, default 216",
                 kColorEntries, 1, 0, "MRGB36.html"},
        OfferRow{kBaseGray, kBaseEntries, kGrayEntries, 0, 0, "Gray16.html"},
        OfferRow{kBaseBayer, kBaseEntries, kColorEntries, 0, 0, "Gray16.html"},
        OfferRow{kBaseColor,
                 "1x24bit RGB (Parallel 8bit)=500 FG_CL_RGB, "
                 "3x 8bit RGB (Serial 8bit Single Tap)=8 FG_CL_SINGLETAP_8_BIT, "
                 "3x10bit RGB (Serial 10bit Single Tap)=10 FG_CL_SINGLETAP_10_BIT, "
                 "3x12bit RGB (Serial 12bit Single Tap)=12 FG_CL_SINGLETAP_12_BIT, "
                 "3x14bit RGB (Serial 14bit Single Tap)=14 FG_CL_SINGLETAP_14_BIT, "
                 "3x16bit RGB (Serial 16bit Single Tap)=16 FG_CL_SINGLETAP_16_BIT, "
                 "2x16bit RGB (Serial 8bit Dual Tap)=108 FG_CL_DUALTAP_8_BIT, "
                 "2x20bit RGB (Serial 10bit Dual Tap)=110 FG_CL_DUALTAP_10_BIT, "
                 "2x24bit RGB (Serial 12bit Dual Tap)=112 FG_CL_DUALTAP_12_BIT, default 500",
                 kColorEntries, 0, 26, "RGB48.html"}));

TEST_F(CamPortTest, LiteFormatsNeedTheLiteRegister) {
    const std::string lite = "8 Bit Pocl Lite=130 FG_CL_LITE_8_BIT, 10 Bit Pocl Lite=140 FG_CL_LITE_10_BIT, default 8";
    board.registers.push_back({"AACamPortLite", 1, 1});
    PSCamPort& module = addCamera(kBaseGray);
    EXPECT_TRUE(module.isPoclLiteAvailable(0));
    EXPECT_FALSE(module.isPoclLiteAvailable(1));
    EXPECT_FALSE(module.isPoclLiteAvailable(2));
    EXPECT_EQ(module.getRegisterInitSuccess(), 0);  // an optional register
    EXPECT_TRUE(entriesOf(record(11011), 0).ends_with(lite));
    EXPECT_EQ(entriesOf(record(11011), 1), kBaseEntries);
}

TEST_F(CamPortTest, BayerPortHasNoLiteFormats) {
    giveLiteRegisters();
    addCamera(kBaseBayer);
    EXPECT_EQ(entriesOf(record(11011), 0), kBaseEntries);
}

}  // namespace
