
#include "StandardApplets/grabber_basis/PSFx4/PSCamPort.h"
#include "StandardApplets/grabber_basis/PSFx4/PSWindow.h"
#include "tests/core/CamPortFixture.h"

namespace {

constexpr int kGray16 = 1;
constexpr int kGray8 = 3;

// ---- Registers

constexpr const char* kFullInput8 =
    "AACamPortFullFlavour 0, AACamPortBits 0, ABCamPortBits 0, AACamPortRgb 0, ABCamPortRgb 0, BACamPortRgb 0, "
    "BBCamPortRgb 0, AACamPortDualTap 0, ABCamPortDualTap 0";

TEST_F(CamPortTest, FullUpdateWritesTheBlockInOrder) {
    PSCamPort& module = addCamera(kFull);
    EXPECT_EQ(module.updateAllParameters(0), 0);
    // Each configuration is written between two writes of the reset, each with its read of the status.
    EXPECT_EQ(board.eventsOf("status").size(), 4u);
    EXPECT_EQ(writes(), std::string("AACamPortLineCam 0, BACamPortLineCam 0, AAGateMode 3, "
                                    "AAReset 1, AACamPortConfig 2, BACamPortConfig 2, AAReset 0, ") +
                            kFullInput8 +
                            ", AAOutputFormat 0, ABOutputFormat 0, "
                            "AAReset 1, AACamPortConfig 2, BACamPortConfig 2, AAReset 0, "
                            "AACamPortUseDval 1, ABCamPortUseDval 1, AAPixelOrder 228");
    EXPECT_EQ(module.updateAllParameters(1), 0);
    EXPECT_EQ(writes(), std::string("ABCamPortLineCam 0, BBCamPortLineCam 0, ABGateMode 3, "
                                    "AAReset 1, AACamPortConfig 2, BACamPortConfig 2, AAReset 0, ") +
                            kFullInput8 +
                            ", ABOutputFormat 0, "
                            "AAReset 1, AACamPortConfig 2, BACamPortConfig 2, AAReset 0, "
                            "AACamPortUseDval 1, ABCamPortUseDval 1, ABPixelOrder 228");
}

TEST_F(CamPortTest, InputFormatsReachTheRegisters) {
    // clang-format off
    const struct {
        CamPortArguments camera;
        unsigned format, flavour, bits, rgb, dualTap, lite;
    } rows[] = {
        {kFull, 310, 1, 0, 0, 0, 0},        {kFull, 308, 0, 0, 0, 0, 0},        {kMedium, 208, 0, 0, 0, 1, 0},
        {kMedium, 210, 0, 1, 0, 1, 0},      {kMediumBayer, 212, 0, 2, 0, 1, 0}, {kMediumColor, 216, 0, 1, 1, 1, 0},
        {kMediumColor, 218, 0, 2, 1, 1, 0}, {kBaseGray, 8, 0, 0, 0, 0, 0},      {kBaseGray, 10, 0, 1, 0, 0, 0},
        {kBaseGray, 12, 0, 2, 0, 0, 0},     {kBaseGray, 14, 0, 3, 0, 0, 0},     {kBaseGray, 16, 0, 4, 0, 0, 0},
        {kBaseGray, 108, 0, 0, 0, 1, 0},    {kBaseGray, 130, 0, 0, 0, 0, 1},    {kBaseGray, 140, 0, 1, 0, 0, 1},
        {kBaseBayer, 110, 0, 1, 0, 1, 0},   {kBaseColor, 112, 0, 2, 2, 1, 0},   {kBaseColor, 500, 0, 0, 1, 0, 0},
    };
    // clang-format on
    giveLiteRegisters();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        const auto& [isArea, isMedium, isColor, isBayer, isFull] = row.camera;
        // Driven without the registry, which serves the first module of a kind only.
        PSCamPort module(&master(), isArea, isMedium, isColor, isBayer, isFull);
        EXPECT_EQ(module.setParamToRs(11011, &row.format, 0), 0);
        for (const char* other : {"AB", "BB"}) board.setValue(std::string(other) + "CamPortRgb", 9);
        EXPECT_EQ(module.updateParameter(0, 11011), 0);
        EXPECT_EQ(board.value("AACamPortFullFlavour"), row.flavour);
        EXPECT_EQ(board.value("AACamPortBits"), row.bits);
        for (const char* name : {"AACamPortRgb", "BACamPortRgb"}) EXPECT_EQ(board.value(name), row.rgb);
        for (const char* name : {"ABCamPortRgb", "BBCamPortRgb"}) {
            EXPECT_EQ(board.value(name), isMedium ? row.rgb : 9);
        }
        EXPECT_EQ(board.value("AACamPortDualTap"), row.dualTap);
        EXPECT_EQ(board.value("AACamPortLite"), row.lite);
    }
}

// ---- Pixel depth

TEST_F(CamPortTest, PixelDepthOfRightAlignedOutputFollowsTheInput) {
    giveLiteRegisters();
    addCamera(kBaseGray);
    EXPECT_EQ(set(11011, 12), 0);
    EXPECT_EQ(get(4000), 8);  // 8-bit output
    EXPECT_EQ(set(700, kGray16), 0);
    // In order: a format without a depth of its own leaves the last one.
    // clang-format off
    const std::pair<int, int> rows[] = {
        {8, 8}, {10, 10}, {12, 12}, {14, 14}, {16, 16}, {108, 8}, {110, 10}, {112, 12}, {208, 8}, {210, 10}, {212, 12},
        {130, 12}, {216, 10}, {140, 10}, {218, 12}, {308, 12}, {500, 8}, {310, 8}, {14, 14}, {999, 14},
    };
    // clang-format on
    for (const auto& [format, depth] : rows) {
        EXPECT_EQ(load(11011, format), 0);
        EXPECT_EQ(get(4000), depth) << format;
    }
    EXPECT_EQ(set(4010, 1), 0);
    EXPECT_EQ(get(4000), 16);
    EXPECT_EQ(get(4000, 1), 0);  // port 1 has not been written yet
    EXPECT_EQ(set(700, kGray8), 0);
    EXPECT_EQ(get(4000), 8);
    EXPECT_EQ(set(4000, 10), -8010);
}

// ---- What a change means elsewhere

TEST_F(CamPortTest, OutputFormatRewritesTheWindow) {
    add<PSWindow>(2147483647, 1024, 1024, -1);
    addCamera(kBaseGray);
    EXPECT_EQ(set(700, kGray16), 0);
    EXPECT_EQ(writes(),
              "AAOutputFormat 1, AAReset 1, AACamPortConfig 0, BACamPortConfig 0, AAReset 0, "
              "AAAreaWidth 511, AAAreaHeight 1023, AAAreaXPos 0, AAAreaYPos 0");
    EXPECT_EQ(master().getActiveFormat(0), 1);
    board.failWrite("AAAreaXPos", -33);
    EXPECT_EQ(set(700, kGray8), -33);
}

TEST_F(CamPortTest, NewConfigurationFirstRewritesAnInputFormatThatItDoesNotOffer) {
    addCamera(kFull);
    EXPECT_EQ(load(24110, 3), 0);  // access override: read and write
    board.clearEvents();
    EXPECT_EQ(set(30000, 0), 0);
    EXPECT_FALSE(master().getIsMedium());
    EXPECT_EQ(entriesOf(record(11011), 0), kBaseEntries);
    EXPECT_EQ(writes(),
              "AACamPortFullFlavour 0, AACamPortBits 0, AACamPortRgb 0, BACamPortRgb 0, AACamPortDualTap 0, "
              "AAReset 1, AACamPortConfig 0, BACamPortConfig 0, AAReset 0");
    EXPECT_EQ(get(11011), 308);
    EXPECT_EQ(set(11011, 8), 0);
    board.clearEvents();
    EXPECT_EQ(set(30000, 1), 0);  // back to full formats, which do not have 8
    const std::string configured =
        std::string(kFullInput8) + ", AAReset 1, AACamPortConfig 1, BACamPortConfig 1, AAReset 0";
    EXPECT_EQ(writes(), configured);
    board.clearEvents();
    EXPECT_EQ(set(700, kGray8), 0);  // also before what the format itself writes
    EXPECT_EQ(writes(), std::string(kFullInput8) + ", AAOutputFormat 0, ABOutputFormat 0, " + configured);
}

// ---- Failures

struct FailureRow {
    CamPortArguments camera;
    int id;
    std::vector<const char*> failing;
    int result;
    const char* lastWrite;
};

class CamPortFailures : public CamPortTable<FailureRow> {};

TEST_P(CamPortFailures, GiveTheResultOfTheSequence) {
    const FailureRow& row = GetParam();
    giveLiteRegisters();
    PSCamPort& module = addCamera(row.camera);
    for (const char* name : row.failing) board.failWrite(name, -5);
    EXPECT_EQ(module.updateParameter(0, row.id), row.result);
    EXPECT_EQ(board.writes().back(), row.lastWrite);
    for (const char* name : row.failing) board.failWrite(name, 0);
    EXPECT_EQ(module.updateParameter(0, row.id), 0);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    All, CamPortFailures,
    testing::Values(
        FailureRow{kFull, 11011, {"AACamPortFullFlavour"}, 0, "AACamPortFullFlavour 0"},
        FailureRow{kFull, 11011, {"AACamPortRgb", "ABCamPortDualTap"}, -2, "AACamPortLite 0"},
        FailureRow{kFull, 11011, {"AACamPortLite"}, -1, "AACamPortLite 0"},
        FailureRow{kBaseGray, 11011, {"AACamPortBits", "BACamPortRgb"}, -2, "AACamPortLite 0"},
        FailureRow{kBaseGray, 11011, {"AACamPortRgb", "AACamPortDualTap"}, -2, "AACamPortDualTap 0"},
        FailureRow{kFull, 700, {"AAOutputFormat"}, -5, "AAOutputFormat 0"},
        FailureRow{kFull, 700, {"ABOutputFormat"}, -5, "ABOutputFormat 0"},
        FailureRow{kFull, 700, {"AACamPortConfig", "BACamPortConfig"}, 0, "AAReset 0"},
        FailureRow{kFull, 30000, {"AACamPortConfig", "BACamPortConfig"}, -2, "AAReset 0"},
        FailureRow{kFull, 30000, {"AAReset"}, 0, "AAReset 0"},
        FailureRow{kFull, 30001, {"AACamPortLineCam", "BACamPortLineCam", "AAGateMode"}, -3, "AAGateMode 3"},
        FailureRow{kFull, 5025, {"AACamPortUseDval", "ABCamPortUseDval"}, -2, "ABCamPortUseDval 1"},
        FailureRow{kBaseGray, 5025, {"AACamPortUseDval"}, -1, "AACamPortUseDval 1"},
        FailureRow{kFull, 9200, {"AAPixelOrder"}, 0, "AAPixelOrder 228"}));
// clang-format on

}  // namespace
