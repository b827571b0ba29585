#include <future>
#include <thread>

#include "board/BoardFixture.h"
#include "simulation/board/Scene.h"

using namespace simulation;

namespace {

using DmaTest = BoardFixture;

TEST_F(DmaTest, PicturesArriveInOrderWithTagsLengthsAndStamps) {
    BufferSet& buffers = addBuffers(4);
    ASSERT_EQ(startFlowing(10), 0);
    EXPECT_EQ(buffers.wait(10, 20), 10);
    EXPECT_EQ(buffers.lastPicture(), 10);
    std::string why;
    const auto scene = Scene::create({64, 32}, why);
    for (int32_t picture = 7; picture <= 10; ++picture) {
        const auto record = buffers.ofPicture(picture);
        ASSERT_TRUE(record) << picture;
        EXPECT_EQ(record->frame, static_cast<uint64_t>(picture));
        EXPECT_EQ(record->length, 2048u);
        EXPECT_EQ(record->stamp, std::chrono::milliseconds(10 * picture));
        EXPECT_EQ(mMemory[static_cast<size_t>((picture - 1) % 4)], scene->frame(static_cast<uint64_t>(picture)).pixels);
    }
    EXPECT_FALSE(buffers.ofPicture(6)) << "overwritten";
    EXPECT_FALSE(buffers.ofPicture(0));
    EXPECT_FALSE(buffers.ofPicture(-2147483647 - 1));
    EXPECT_EQ(buffers.inBuffer(9)->picture, 10) << "the index is taken modulo the number of buffers";
    EXPECT_FALSE(buffers.inBuffer(-1));
    EXPECT_EQ(mBoard.statistics().delivered, 10u);
}

TEST_F(DmaTest, ReleasesNoFrameWhileThePathIsClosed) {
    BufferSet& buffers = addBuffers(2);
    ASSERT_EQ(start(2), 0);
    EXPECT_EQ(buffers.wait(1, 0), kTimeOut) << "global work is off";
    mBoard.setLink(false);
    write(kGlobalWork, 1);
    EXPECT_EQ(buffers.wait(1, 0), kTimeOut) << "the link is down";
    write(kReset, 1);
    mBoard.setLink(true);
    EXPECT_EQ(buffers.wait(1, 0), kTimeOut) << "the path is in reset";
    write(kReset, 0);
    EXPECT_EQ(buffers.wait(2, 20), 2);
    EXPECT_EQ(buffers.ofPicture(1)->frame, 1u);
}

TEST_F(DmaTest, AResetRestartsTheFrameNumbers) {
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(startFlowing(-1, 32), 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    write(kReset, 1);
    write(kReset, 0);
    EXPECT_EQ(buffers.handBack(0), 0);
    EXPECT_EQ(buffers.wait(2, 20), 2);
    const uint64_t second = buffers.ofPicture(2)->frame;
    EXPECT_EQ(buffers.handBack(0), 0);
    EXPECT_EQ(buffers.wait(3, 20), 3);
    // The frame that already waits for the buffer belongs to the time before the reset.
    EXPECT_EQ(buffers.ofPicture(3)->frame, second == 2 ? 1u : 2u);
    EXPECT_LE(second, 2u);
}

TEST_F(DmaTest, HandShakeWaitsForTheHost) {
    BufferSet& buffers = addBuffers(2);
    ASSERT_EQ(startFlowing(5, 32), 0);
    EXPECT_EQ(buffers.wait(2, 20), 2);
    EXPECT_EQ(buffers.wait(3, 1), kTimeOut);
    EXPECT_EQ(buffers.handBack(0), 0);
    EXPECT_EQ(buffers.wait(3, 20), 3);
    EXPECT_EQ(buffers.ofPicture(3)->frame, 3u) << "in fast mode nothing is lost";
    EXPECT_EQ(buffers.handBack(2), kBadArgument);
    EXPECT_EQ(buffers.handBack(-1), kBadArgument);
}

TEST_F(DmaTest, InRealTimeFramesWithoutABufferAreLost) {
    ASSERT_EQ(mBoard.setMode(ClockMode::realTime).code, 0);
    ASSERT_EQ(mBoard.setRate(500).code, 0);
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(startFlowing(2, 32), 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    while (mBoard.statistics().lost < 3) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(buffers.handBack(0), 0);
    EXPECT_EQ(buffers.wait(2, 20), 2);
    EXPECT_EQ(buffers.ofPicture(2)->frame, 2 + mBoard.statistics().lost) << "the gap shows in the tag";
}

TEST_F(DmaTest, RealTimeKeepsTheCamerasRate) {
    ASSERT_EQ(mBoard.setMode(ClockMode::realTime).code, 0);
    ASSERT_EQ(mBoard.setRate(200).code, 0);
    BufferSet& buffers = addBuffers(32);
    const Stopwatch watch;
    ASSERT_EQ(startFlowing(21), 0);
    EXPECT_EQ(buffers.wait(21, 20), 21);
    EXPECT_GE(watch.seconds(), 0.1) << "20 periods of 5 ms";
    for (int32_t picture = 2; picture <= 21; ++picture) {
        EXPECT_EQ(buffers.ofPicture(picture)->stamp - buffers.ofPicture(picture - 1)->stamp,
                  std::chrono::milliseconds(5));
    }
}

TEST_F(DmaTest, StartsAreCheckedAndChangeNothing) {
    EXPECT_EQ(start(1), kBadArgument) << "no memory";
    BufferSet& buffers = addBuffers(2);
    for (const DmaRequest& request : {
             DmaRequest{1,  0,  0, 16, 1},
             {-1, 0,  0, 16, 1},
             {0,  2,  0, 16, 1},
             {0,  -1, 0, 16, 1},
             {0,  0,  0, 17, 1},
             {0,  0,  0, 16, 0}
    }) {
        const Outcome outcome = mBoard.startDma(request, mBuffers);
        EXPECT_EQ(outcome.code, kBadArgument);
        EXPECT_NE(outcome.text, "");
    }
    EXPECT_EQ(buffers.remove(1), 0);
    EXPECT_EQ(start(1), kBadArgument) << "a buffer is missing";
    EXPECT_EQ(buffers.wait(1, 1000), kStopped);
    EXPECT_EQ(buffers.add(1, mMemory[1]), 0);
    EXPECT_EQ(start(-1), 0);
    EXPECT_EQ(start(-1), kBusy);
    EXPECT_EQ(mBoard.setScene({64, 32}).code, kBusy);
    EXPECT_EQ(mBoard.setMode(ClockMode::realTime).code, kBusy);
    EXPECT_EQ(mBoard.stopDma(1), kBadArgument);
    EXPECT_EQ(mBoard.stopDma(0), 0);
    EXPECT_EQ(mBoard.stopDma(0), 0);
    EXPECT_EQ(start(1), 0);
}

TEST_F(DmaTest, TheFirstBufferMovesTheRing) {
    BufferSet& buffers = addBuffers(3);
    ASSERT_EQ(mBoard.startDma({0, 2, 0, 16, 1}, mBuffers).code, 0);
    write(kGlobalWork, 1);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_EQ(buffers.inBuffer(2)->picture, 1);
    EXPECT_THAT(mMemory[0], Each(0xEE));
}

TEST_F(DmaTest, AWaitEndsWhenItsTransferIsReplaced) {
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(start(-1), 0);
    auto waiting = std::async(std::launch::async, [&] { return buffers.wait(1, 1'000'000); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(mBoard.stopDma(0), 0);
    EXPECT_EQ(start(-1), 0);
    EXPECT_EQ(waiting.get(), kStopped);
}

TEST_F(DmaTest, WaitsForWhatCannotComeEndAtOnce) {
    BufferSet& buffers = addBuffers(2);
    EXPECT_EQ(buffers.wait(1, 1000), kStopped) << "never started";
    ASSERT_EQ(start(3), 0);
    EXPECT_EQ(buffers.wait(4, 1000), kStopped) << "beyond the programmed count";
    write(kGlobalWork, 1);
    EXPECT_EQ(buffers.wait(3, 20), 3);
    EXPECT_EQ(buffers.wait(2147483647, 1000), kStopped);
    EXPECT_EQ(buffers.wait(2, 0), 3) << "what has come is told";
    EXPECT_EQ(buffers.wait(0, 1), kBadArgument);
    EXPECT_EQ(buffers.wait(1, -1), kBadArgument);
}

TEST_F(DmaTest, APictureLargerThanItsBufferIsCut) {
    BufferSet& buffers = addBuffers(1, 100);
    ASSERT_EQ(startFlowing(1), 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_EQ(buffers.ofPicture(1)->length, 100u);
    ASSERT_EQ(mBoard.startDma({0, 0, 40, 16, 1}, mBuffers).code, 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_EQ(buffers.ofPicture(1)->length, 40u) << "the transfer's own length";
}

TEST_F(DmaTest, BuffersMayGoWhileATransferRuns) {
    BufferSet& buffers = addBuffers(2);
    ASSERT_EQ(startFlowing(-1), 0);
    EXPECT_GE(buffers.wait(3, 20), 3);
    EXPECT_EQ(buffers.remove(0), 0);
    std::vector<uint8_t>().swap(mMemory[0]);
    while (mBoard.statistics().lost == 0) std::this_thread::yield();
    const auto kept = mBoard.buffers(mBuffers);
    EXPECT_EQ(mBoard.freeBuffers(mBuffers), 0);
    EXPECT_FALSE(kept->isRunning());
    EXPECT_EQ(mBoard.freeBuffers(mBuffers), kBadArgument);
}

TEST_F(DmaTest, BufferMemoryIsChecked) {
    EXPECT_EQ(mBoard.createBuffers(0, 1), nullptr);
    EXPECT_EQ(mBoard.createBuffers(100, 0), nullptr);
    EXPECT_EQ(mBoard.createBuffers(100, -1), nullptr);
    EXPECT_EQ(mBoard.createBuffers(100, 2147483647), nullptr);
    BufferSet& buffers = addBuffers(2);
    EXPECT_EQ(buffers.add(0, mMemory[0]), kBadArgument) << "taken";
    EXPECT_EQ(buffers.add(2, mMemory[0]), kBadArgument);
    EXPECT_EQ(buffers.add(-1, mMemory[0]), kBadArgument);
    EXPECT_EQ(buffers.remove(1), 0);
    EXPECT_EQ(buffers.remove(1), kBadArgument);
    EXPECT_EQ(buffers.add(1, {}), kBadArgument) << "no bytes";
}

}  // namespace
