#include <thread>

#include "board/BoardFixture.h"

using namespace simulation;
using std::chrono::milliseconds;

namespace {

/// The camera sends a frame every 10 ms; in fast mode the first one comes 10 ms after the start of a transfer.
class DisturbanceTest : public BoardFixture {
protected:
    ~DisturbanceTest() override { mBoard.halt(); }

    /// Takes pictures into as many buffers. \return the numbers of their frames
    std::vector<uint64_t> framesOf(int32_t pictures) {
        BufferSet& buffers = addBuffers(pictures, 16);
        EXPECT_EQ(startFlowing(pictures), 0);
        EXPECT_EQ(buffers.wait(pictures, 20), pictures);
        std::vector<uint64_t> frames;
        for (int32_t picture = 1; picture <= pictures; ++picture) {
            const auto record = buffers.ofPicture(picture);
            frames.push_back(record->frame);
            EXPECT_EQ(record->tag, record->frame);
            EXPECT_EQ(record->stamp - buffers.ofPicture(1)->stamp, milliseconds(10) * (record->frame - frames[0]));
        }
        return frames;
    }
    void inRealTimeAt(double rateHz) {
        EXPECT_EQ(mBoard.setMode(ClockMode::realTime).code, 0);
        EXPECT_EQ(mBoard.setRate(rateHz).code, 0);
    }
    Disturbances& disturb() { return mBoard.disturbances(); }
};

TEST_F(DisturbanceTest, DropsTheSameFramesWithTheSameSeed) {
    EXPECT_EQ(disturb().setDrop(25, 1).code, 0);
    const std::vector<uint64_t> frames = framesOf(1000);
    const TransferStatistics statistics = mBoard.statistics();
    EXPECT_NEAR(static_cast<double>(frames.back()), 1333, 90) << "a quarter is gone; five standard deviations";
    EXPECT_EQ(statistics.delivered, 1000u);
    EXPECT_EQ(statistics.dropped, frames.back() - 1000);
    EXPECT_EQ(statistics.lost, statistics.dropped);
    EXPECT_EQ(framesOf(1000), frames);
    EXPECT_EQ(disturb().setDrop(25, 2).code, 0);
    EXPECT_NE(framesOf(1000), frames);
    EXPECT_EQ(disturb().setDrop(0, 1).code, 0);
    EXPECT_EQ(framesOf(1000).back(), 1000u);
    EXPECT_EQ(mBoard.statistics().lost, 0u);
}

TEST_F(DisturbanceTest, EveryTransferHasTheGapOfTheLink) {
    EXPECT_EQ(disturb().setLinkGap(100, 200).code, 0);
    for (const char* transfer : {"first", "second"}) {
        SCOPED_TRACE(transfer);
        const std::vector<uint64_t> frames = framesOf(20);
        EXPECT_EQ(frames[8], 9u);
        EXPECT_EQ(frames[9], 30u) << "the frames of 100 ms to 290 ms are missing";
        EXPECT_EQ(frames[19], 40u);
        EXPECT_EQ(mBoard.statistics().lost, 0u) << "they never reached the board";
    }
}

TEST_F(DisturbanceTest, AnAcquisitionGoesOnWhenTheCameraIsPluggedInAgain) {
    inRealTimeAt(200);
    BufferSet& buffers = addBuffers(512);
    ASSERT_EQ(startFlowing(-1), 0);
    EXPECT_GE(buffers.wait(3, 20), 3);
    mBoard.setLink(false);
    std::this_thread::sleep_for(milliseconds(50));  // what was on its way arrives
    const int32_t last = buffers.lastPicture();
    EXPECT_EQ(buffers.wait(last + 1, 1), kTimeOut);
    EXPECT_EQ(mBoard.cameraStatus(0), 0);
    mBoard.setLink(true);
    EXPECT_GE(buffers.wait(last + 1, 20), last + 1);
    EXPECT_EQ(mBoard.cameraStatus(0), 7);
    const auto before = buffers.ofPicture(last);
    const auto after = buffers.ofPicture(last + 1);
    EXPECT_GE(after->stamp - before->stamp, milliseconds(1000));
    EXPECT_EQ(milliseconds(5) * (after->tag - before->tag), after->stamp - before->stamp) << "the gap shows in both";
}

TEST_F(DisturbanceTest, FramesOfAHeldDmaAreLost) {
    EXPECT_EQ(disturb().setDmaGap(100, 200).code, 0);
    const std::vector<uint64_t> frames = framesOf(20);
    EXPECT_EQ(frames[8], 9u);
    EXPECT_EQ(frames[9], 30u);
    EXPECT_EQ(mBoard.statistics().held, 20u);
    EXPECT_EQ(mBoard.statistics().lost, 20u);
    EXPECT_EQ(mBoard.statistics().dropped, 0u);
    EXPECT_EQ(mBoard.cameraStatus(0), 7);
}

TEST_F(DisturbanceTest, AHeldDmaGoesOnWhenItIsReleased) {
    inRealTimeAt(500);
    disturb().holdDma(true);
    BufferSet& buffers = addBuffers(64);
    ASSERT_EQ(startFlowing(-1), 0);
    while (mBoard.statistics().held < 5) std::this_thread::sleep_for(milliseconds(1));
    EXPECT_EQ(buffers.lastPicture(), 0);
    disturb().holdDma(false);
    EXPECT_GE(buffers.wait(1, 20), 1);
    EXPECT_EQ(buffers.ofPicture(1)->tag, 1 + mBoard.statistics().held);
}

TEST_F(DisturbanceTest, TagsAndTimeStampsWrap) {
    EXPECT_EQ(disturb().setFirstTag(0x7FFFFFFE).code, 0);
    EXPECT_EQ(disturb().setFirstTimeStamp(UINT64_MAX - 15'000'000 + 1).code, 0);
    BufferSet& buffers = addBuffers(4);
    ASSERT_EQ(startFlowing(4), 0);
    ASSERT_EQ(buffers.wait(4, 20), 4);
    const std::tuple<int32_t, uint32_t, uint64_t> expected[]{
        {1, 0x7FFFFFFE, UINT64_MAX - 5'000'000 + 1},
        {2, 0x7FFFFFFF, 5'000'000                 },
        {3, 0,          15'000'000                },
        {4, 1,          25'000'000                },
    };
    for (const auto& [picture, tag, timeStamp] : expected) {
        EXPECT_EQ(buffers.ofPicture(picture)->tag, tag);
        EXPECT_EQ(buffers.ofPicture(picture)->timeStamp, timeStamp);
        EXPECT_EQ(buffers.ofPicture(picture)->frame, static_cast<uint64_t>(picture));
    }
}

TEST_F(DisturbanceTest, TheStatusShowsTheGapOfTheLink) {
    EXPECT_EQ(disturb().setLinkGap(0, 1e9).code, 0);
    EXPECT_EQ(mBoard.cameraStatus(0), 7) << "before the first transfer";
    EXPECT_EQ(disturb().setLinkGap(100, 200).code, 0);
    framesOf(9);
    EXPECT_EQ(mBoard.cameraStatus(0), 7) << "90 ms after its start";
    EXPECT_EQ(disturb().setLinkGap(90, 200).code, 0);
    EXPECT_EQ(mBoard.cameraStatus(0), 0);
}

}  // namespace
