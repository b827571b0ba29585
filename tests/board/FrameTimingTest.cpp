// Trigger block, camera line and camera together, in their own time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "simulation/board/ExposedFrame.h"
#include "simulation/board/FrameTiming.h"

using namespace simulation;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr BoardTime us(int64_t count) { return std::chrono::microseconds(count); }

/// Pulses of 100 us whenever input 0 rises, on a line that the triggered camera reads out in 1000 us.
class FrameTimingTest : public testing::Test {
protected:
    FrameTimingTest() {
        mSettings.trigger.isOn = true;
        mSettings.trigger.maker = TriggerSettings::Maker::trigger;
        mSettings.trigger.unit = us(10);
        mSettings.trigger.cycle = us(100);
        mSettings.trigger.exSync = {us(0), us(100)};
        mSettings.trigger.flash = mSettings.trigger.exSync;
        mSettings.camera = {true, us(10'000), us(1000)};
        mSettings.line = {0, false};
        mTiming.apply(mSettings);
    }
    std::vector<CompletedFrame> framesUntil(int64_t time) {
        std::deque<CompletedFrame> frames;
        mTiming.advance(us(time), frames);
        return {frames.begin(), frames.end()};
    }
    static std::vector<uint64_t> ordinals(const std::vector<CompletedFrame>& frames) {
        std::vector<uint64_t> numbers;
        for (const CompletedFrame& frame : frames) numbers.push_back(frame.ordinal);
        return numbers;
    }
    void generate(int64_t periodUs, int64_t exposureUs) {
        mSettings.trigger.maker = TriggerSettings::Maker::generator;
        mSettings.trigger.cycle = us(periodUs);
        mSettings.trigger.exSync.width = us(exposureUs);
        mTiming.apply(mSettings);
    }

    TimingSettings mSettings;
    FrameTiming mTiming;
};

TEST_F(FrameTimingTest, TriggersThatComeDuringTheReadoutAreLost) {
    mTiming.setInputPeriod(0, us(700));
    // Exposures end at 800, 1500, 2200, 2900, 3600, 4300 and so on; a readout takes 1000.
    //   1: 800 -> 1800   2: 1500 lost   3: 2200 -> 3200   4: 2900 lost   5: 3600 -> 4600   6: 4300 lost
    const auto frames = framesUntil(4700);
    EXPECT_THAT(ordinals(frames), ElementsAre(1, 3, 5));
    EXPECT_EQ(frames[1].time, us(3200));
    EXPECT_EQ(frames[1].exposure, us(100));
    EXPECT_EQ(mTiming.count().missed, 3U);
    // A readout that ends as the exposure does loses nothing: 700 us with a period of 700 us.
    mSettings.camera.readout = us(700);
    mTiming.apply(mSettings);
    EXPECT_THAT(ordinals(framesUntil(9000)), ElementsAre(7, 8, 9, 10, 11));
    EXPECT_EQ(mTiming.count().missed, 3U);
    // 400 us: 120 us of each pulse and its rest are over long before, but two of three edges of 50 us are ignored.
    EXPECT_EQ(mTiming.trigger().ignored(), 0U);
    mTiming.setInputPeriod(0, us(50));
    std::ignore = framesUntil(12'000);
    EXPECT_EQ(mTiming.trigger().ignored(), 2 * (mTiming.trigger().pulses() - 12)) << "one of three is taken";
}

TEST_F(FrameTimingTest, LooksAheadToTheVeryFrameThatComes) {
    EXPECT_EQ(mTiming.nextFrame(), std::nullopt) << "nobody triggers";
    mTiming.setInputPeriod(0, us(700));
    EXPECT_EQ(mTiming.nextFrame(), us(1800));
    std::ignore = framesUntil(1800);
    EXPECT_EQ(mTiming.nextFrame(), us(3200)) << "the trigger between is lost";
    mTiming.setInputPeriod(0, std::nullopt);
    std::ignore = framesUntil(5000);
    EXPECT_EQ(mTiming.nextFrame(), std::nullopt);
    mTiming.pulse(0);
    EXPECT_EQ(mTiming.nextFrame(), us(6100));
    std::ignore = framesUntil(6100);

    generate(20'000, 20'000);
    EXPECT_EQ(mTiming.nextFrame(), std::nullopt) << "an exposure without an end";
    mSettings.camera.isTriggered = false;
    mTiming.apply(mSettings);
    EXPECT_EQ(mTiming.nextFrame(), us(16'100)) << "free, a period from now";
    mSettings.generatorIsSource = true;
    mTiming.apply(mSettings);
    EXPECT_EQ(mTiming.nextFrame(), std::nullopt) << "the image generator is held";
    mSettings.generatorPeriod = us(77);
    mTiming.apply(mSettings);
    EXPECT_EQ(mTiming.nextFrame(), us(6177));
}

TEST_F(FrameTimingTest, ALineThatDoesNotCarryThePulsesTriggersNothing) {
    struct Row {
        CcLine line;
        int64_t exposureUs;  // 0 = no frames
    };
    constexpr std::array kRows{
        Row{{0, false}, 400},
        Row{{0, true},  600}, // the camera exposes between the pulses
        Row{{2, false}, 300},
        Row{{1, false}, 0  },
        Row{{4, true},  0  },
    };
    mSettings.camera.readout = us(100);
    mSettings.trigger.flashIsOn = true;
    mSettings.trigger.flash.width = us(300);
    int64_t now = 0;
    for (const auto& [line, exposureUs] : kRows) {
        SCOPED_TRACE(testing::Message() << line.source << line.isInverted);
        mSettings.line = line;
        generate(1000, 400);
        std::ignore = framesUntil(now += 5000);
        const auto frames = framesUntil(now += 5000);
        ASSERT_EQ(frames.size(), exposureUs == 0 ? 0U : 5U);
        for (const CompletedFrame& frame : frames) EXPECT_EQ(frame.exposure, us(exposureUs));
    }
}

TEST_F(FrameTimingTest, SwitchingBetweenFreeAndTriggeredStartsAfresh) {
    mSettings.camera.isTriggered = false;
    mTiming.apply(mSettings);
    EXPECT_THAT(ordinals(framesUntil(25'000)), ElementsAre(1, 2));
    mTiming.pulse(0);
    std::ignore = framesUntil(25'050);
    mSettings.camera.isTriggered = true;
    mTiming.apply(mSettings);
    EXPECT_THAT(framesUntil(40'000), IsEmpty()) << "a pulse of which it did not see the beginning";
    mTiming.pulse(0);
    std::ignore = framesUntil(40'500);
    mSettings.camera.isTriggered = false;
    mTiming.apply(mSettings);
    const auto frames = framesUntil(51'000);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].time, us(41'100)) << "the readout goes on";
    EXPECT_EQ(frames[1].time, us(50'500));
}

TEST(ExposureCurveTest, ShadesAreInProportionToTheExposure) {
    ExposureCurve curve;
    const auto shades = [&](int64_t exposureUs) {
        curve.set(us(exposureUs), us(4000));
        return std::vector<int>{curve.shade(0), curve.shade(1), curve.shade(99), curve.shade(200), curve.shade(255)};
    };
    EXPECT_THAT(shades(4000), ElementsAre(0, 1, 99, 200, 255));
    EXPECT_TRUE(curve.changesNothing());
    EXPECT_THAT(shades(2000), ElementsAre(0, 1, 50, 100, 128)) << "halves go up";
    EXPECT_FALSE(curve.changesNothing());
    EXPECT_THAT(shades(8000), ElementsAre(0, 2, 198, 255, 255));
    EXPECT_THAT(shades(0), ElementsAre(0, 0, 0, 0, 0));
    curve.set(BoardTime::max(), us(4000));
    EXPECT_EQ(curve.shade(1), 255);
    EXPECT_EQ(curve.shade(0), 0);
}

TEST_F(FrameTimingTest, ALongTimePassesWithTheSamePulses) {
    generate(100, 50);
    FrameTiming played(mTiming);
    std::deque<CompletedFrame> frames;
    played.advance(std::chrono::seconds(100), frames);
    mTiming.pass(std::chrono::seconds(100));
    EXPECT_EQ(mTiming.now(), std::chrono::seconds(100));
    EXPECT_EQ(mTiming.trigger().pulses(), 1'000'001U);
    EXPECT_EQ(mTiming.trigger().pulses(), played.trigger().pulses());
    EXPECT_EQ(mTiming.trigger().exSync().falling, played.trigger().exSync().falling);
    EXPECT_EQ(mTiming.trigger().exSync().lastFalling, played.trigger().exSync().lastFalling);
    mTiming.pass(std::chrono::hours(100'000));
    EXPECT_EQ(mTiming.trigger().pulses(), 3'600'000'000'001U);

    mSettings.trigger.limit = 500'000;
    mTiming.apply(mSettings);
    mTiming.rearm();
    mTiming.pass(std::chrono::hours(200'000));
    EXPECT_EQ(mTiming.trigger().pulses(), 3'600'000'500'001U);

    mTiming.restart();
    mSettings.trigger.limit.reset();
    mSettings.trigger.maker = TriggerSettings::Maker::trigger;
    mTiming.apply(mSettings);
    mTiming.setInputPeriod(0, us(50));
    mTiming.pass(std::chrono::seconds(1000));
    // A pulse and its rest take 120 us with this cycle of 100: every third edge of 50 us.
    EXPECT_EQ(mTiming.trigger().pulses(), 6'666'667U);
}

}  // namespace
