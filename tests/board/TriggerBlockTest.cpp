// The trigger block in its own time. Unless a test says otherwise the time base is 10 us, the period or the time that a
// triggered pulse takes 1000 us and the exposure 400 us.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "simulation/board/TriggerBlock.h"

using namespace simulation;
using testing::ElementsAre;

namespace {

constexpr BoardTime us(int64_t count) { return std::chrono::microseconds(count); }

class TriggerBlockTest : public testing::Test {
protected:
    void set(const char* name, uint64_t value) {
        size_t i = 0;
        while (i < mValues.size() && TriggerSettings::kRegisters[i].name != name) ++i;
        ASSERT_LT(i, mValues.size()) << name;
        mValues[i] = value;
        mBlock.apply(TriggerSettings::of(mValues), mNow);
        mBlock.step(mNow);
    }
    void switchOn(uint64_t maker) {
        set("AATrgArea_HdPeriod", 624);
        set("AATrgArea_ExSyncHigh", 99);
        set("AATrgArea_ExSyncLow", 39);
        set("AATrgArea_ExSyncMode", maker);
        set("AATrgArea_ExSyncOn", 1);
    }
    void softwareTrigger() {
        for (const uint64_t level : {0U, 1U, 1U, 0U}) {
            set("AATrg_ImgSwSet", level);
        }
    }
    void input(unsigned number, bool rises) {
        mBlock.inputEdge(number, rises, mNow);
        mBlock.step(mNow);
    }
    void enqueue(uint64_t triggers) {
        mBlock.enqueue(triggers, 255);
        mBlock.step(mNow);
    }
    /// Goes on to \p time, in microseconds. \return when ExSync went low meanwhile, in microseconds.
    std::vector<int64_t> runTo(int64_t time) {
        std::vector<int64_t> edges;
        for (MaybeTime next = mBlock.next(); next && *next <= us(time); next = mBlock.next()) {
            mNow = std::max(mNow, *next);
            const uint64_t before = mBlock.exSync().falling;
            mBlock.step(mNow);
            if (mBlock.exSync().falling != before) edges.push_back(mNow / us(1));
        }
        mNow = us(time);
        return edges;
    }

    TriggerSettings::Values mValues{};
    TriggerBlock mBlock;
    BoardTime mNow{0};
};

TEST_F(TriggerBlockTest, TheGeneratorCountsItsPeriodInTimeBases) {
    switchOn(0);
    EXPECT_THAT(runTo(2500), ElementsAre(1000, 2000)) << "the first pulse began at once";
    EXPECT_EQ(mBlock.exSync().lastRising, us(2400)) << "after 40 time bases";
    set("AATrgArea_ExSyncHigh", 149);
    EXPECT_THAT(runTo(5100), ElementsAre(3500, 5000)) << "counted from the last trigger";
    set("AATrgArea_HdPeriod", 1249);
    EXPECT_THAT(runTo(11500), ElementsAre(8000, 11000));
    EXPECT_EQ(mBlock.exSync().lastFalling, us(11000));
    set("AATrgArea_ExSyncHigh", 19);
    set("AATrgArea_ExSyncLow", 9);
    EXPECT_THAT(runTo(12350), ElementsAre(11900, 12300)) << "400 us from the last trigger are over: from now";
    set("AATrgArea_ExSyncOn", 0);
    EXPECT_EQ(mBlock.exSync().lastRising, us(12350)) << "cut";
    EXPECT_FALSE(mBlock.next());
}

TEST_F(TriggerBlockTest, DelaysDurationsAndPolaritiesShowInTheSignals) {
    set("AATrgArea_ExSyncDelay", 3);
    set("AATrgArea_FlashDelay", 12);
    set("AATrgArea_FlashLow", 4);
    set("AAEnable_ProgFlashDuration", 1);
    set("AATrg_FlashHighActive", 1);
    set("AATrgArea_FlashEnable", 1);
    set("AATrg_ImgSwEnable", 1);
    switchOn(1);
    runTo(5000);
    softwareTrigger();
    runTo(9000);
    EXPECT_EQ(mBlock.lastTrigger(), us(5000));
    EXPECT_EQ(mBlock.exSync().lastFalling, us(5030));
    EXPECT_EQ(mBlock.exSync().lastRising, us(5430));
    EXPECT_EQ(mBlock.flash().lastRising, us(5120));
    EXPECT_EQ(mBlock.flash().lastFalling, us(5170));

    set("AATrg_ExSyncHighActive", 1);
    set("AATrg_FlashHighActive", 0);
    set("AAEnable_ProgFlashDuration", 0);
    EXPECT_FALSE(mBlock.exSync().level);
    EXPECT_TRUE(mBlock.flash().level);
    softwareTrigger();
    runTo(20000);
    EXPECT_EQ(mBlock.exSync().lastRising, us(9030));
    EXPECT_EQ(mBlock.flash().lastFalling, us(9120));
    EXPECT_EQ(mBlock.flash().lastRising, us(9520)) << "as long as the exposure";

    const uint64_t fallen = mBlock.flash().falling;
    set("AATrgArea_FlashEnable", 0);
    softwareTrigger();
    runTo(30000);
    EXPECT_EQ(mBlock.flash().falling, fallen) << "the flash is off";
}

TEST_F(TriggerBlockTest, OnlyTheSelectedSourceTriggers) {
    struct Row {
        uint64_t switchOn, queueOn;
        uint64_t select, lowActive;
        uint64_t bySwitch, byQueue, byRise2, byFall2, byRise3;
    };
    constexpr std::array kRows{
        Row{0, 0, 2, 0, 0, 0, 1, 0, 0},
        Row{0, 0, 2, 1, 0, 0, 0, 1, 0},
        Row{0, 0, 3, 0, 0, 0, 0, 0, 1},
        Row{1, 0, 2, 0, 1, 0, 0, 0, 0},
        Row{0, 1, 2, 0, 0, 1, 0, 0, 0},
        Row{1, 1, 2, 0, 1, 0, 0, 0, 0},
    };
    switchOn(1);
    int64_t now = 0;
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.switchOn << row.queueOn << row.select << row.lowActive);
        set("AATrg_ImgSwEnable", row.switchOn);
        set("AATrgArea_SwTrgQueueEnable", row.queueOn);
        set("AATrg_ImgInSelect", row.select);
        set("AATrg_ImgInLowActive", row.lowActive);
        const auto pulsesOf = [&](auto&& act) {
            const uint64_t before = mBlock.pulses();
            act();
            runTo(now += 5000);
            return mBlock.pulses() - before;
        };
        EXPECT_EQ(pulsesOf([&] { softwareTrigger(); }), row.bySwitch);
        EXPECT_EQ(pulsesOf([&] { enqueue(1); }), row.byQueue);
        EXPECT_EQ(pulsesOf([&] { input(2, true); }), row.byRise2);
        EXPECT_EQ(pulsesOf([&] { input(2, false); }), row.byFall2);
        EXPECT_EQ(pulsesOf([&] { input(3, true); }), row.byRise3);
        set("AATrgArea_SwTrgQueueEnable", 0);
    }
}

TEST_F(TriggerBlockTest, ATriggerWhileThePulseRunsIsIgnored) {
    set("AATrgArea_ExSyncDelay", 10);
    switchOn(1);
    input(0, true);
    // 100 us of delay, 1000 us of the pulse, two time bases of rest.
    for (const int64_t time : {50, 300, 900, 1119}) {
        runTo(time);
        EXPECT_TRUE(mBlock.isBusy(mNow)) << time;
        input(0, true);
    }
    EXPECT_EQ(mBlock.ignored(), 4U);
    runTo(1120);
    EXPECT_FALSE(mBlock.isBusy(mNow));
    input(0, true);
    runTo(5000);
    EXPECT_EQ(mBlock.pulses(), 2U);
}

TEST_F(TriggerBlockTest, TheQueueHoldsItsTriggersAndGivesThemOutOneByOne) {
    set("AATrgArea_SwTrgQueueEnable", 1);
    enqueue(3);
    EXPECT_EQ(mBlock.queued(), 3U) << "ExSync is off";
    switchOn(1);
    EXPECT_EQ(mBlock.queued(), 2U);
    EXPECT_TRUE(mBlock.isBusy(mNow));
    EXPECT_THAT(runTo(1500), ElementsAre(0, 1020));
    enqueue(1000);
    EXPECT_EQ(mBlock.queued(), 255U) << "what does not fit is dropped";
    EXPECT_EQ(runTo(100'000).size(), 97U) << "1020 us each";
    EXPECT_EQ(mBlock.queued(), 255U - 97);
    EXPECT_EQ(runTo(1'000'000).back(), 1020 * 256) << "two before, 255 after";
    EXPECT_EQ(mBlock.queued(), 0U);
    EXPECT_EQ(mBlock.pulses(), 257U);
    enqueue(9);
    set("AATrgArea_SwTrgQueueEnable", 0);
    EXPECT_EQ(mBlock.queued(), 0U);
}

TEST_F(TriggerBlockTest, ThePulseLimitStopsAfterItsCount) {
    set("AATrgArea_TriggersTillStop", 4);
    set("AATrgArea_FlashEnable", 1);
    switchOn(0);
    runTo(100'000);
    EXPECT_EQ(mBlock.pulses(), 3U);
    EXPECT_EQ(mBlock.flash().falling, 3U);
    mBlock.rearm(mNow);
    runTo(200'000);
    EXPECT_EQ(mBlock.pulses(), 6U) << "the limit was written again";
    set("AATrgArea_ExSyncOn", 0);
    set("AATrgArea_ExSyncMode", 1);
    set("AATrgArea_ExSyncOn", 1);
    for (int i = 1; i <= 5; ++i) {
        input(0, true);
        runTo(200'000 + 2000 * i);
    }
    EXPECT_EQ(mBlock.pulses(), 9U);
    EXPECT_EQ(mBlock.ignored(), 2U);
    set("AATrgArea_SwTrgQueueEnable", 1);
    enqueue(5);
    runTo(300'000);
    EXPECT_EQ(mBlock.queued(), 5U) << "they wait";
    mBlock.rearm(mNow);
    runTo(400'000);
    EXPECT_EQ(mBlock.queued(), 2U);
}

TEST_F(TriggerBlockTest, ADelayLongerThanThePeriodMovesAllPulses) {
    set("AATrgArea_ExSyncDelay", 250);
    switchOn(0);
    EXPECT_THAT(runTo(5000), ElementsAre(2500, 3500, 4500));
    set("AATrgArea_ExSyncDelay", 0);
    EXPECT_THAT(runTo(7000), ElementsAre(6000, 7000)) << "the one that was overdue came at once, in the pulse before";
}

TEST_F(TriggerBlockTest, ExtremeRegistersGiveDefinedTimes) {
    mValues.fill(0);
    const TriggerSettings settings = TriggerSettings::of(mValues);
    EXPECT_EQ(settings.unit, BoardTime(15 * 16)) << "the low phase alone takes 15 clocks";
    set("AATrgArea_ExSyncLow", 5);
    EXPECT_EQ(TriggerSettings::of(mValues).exSync.width, settings.cycle) << "a pulse does not outlast its cycle";
    set("AATrgArea_ExSyncOn", 1);
    runTo(1);
    EXPECT_FALSE(mBlock.exSync().level) << "an exposure longer than the period never ends";
    EXPECT_EQ(mBlock.exSync().rising, 1U) << "the inactive level at first";
}

}  // namespace
