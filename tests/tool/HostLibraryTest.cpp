#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <latch>
#include <limits>
#include <set>
#include <stdexcept>
#include <stop_token>
#include <thread>
#include <vector>

#include "host/Acquisition.h"
#include "host/AppletLibrary.h"
#include "host/BufferSet.h"
#include "host/FrameLoop.h"
#include "host/Grabber.h"
#include "host/HostError.h"
#include "host/ParameterCatalogue.h"
#include "host/ResultCodes.h"
#include "host/RuntimeLibraries.h"
#include "host/TagGaps.h"

namespace tooltest {
namespace {

using namespace quillon::host;

const char* const kApplet = QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so";

class HostLibraryTest : public testing::Test {
protected:
    size_t windowBytes() {
        EXPECT_EQ(mGrabber.write(FG_WIDTH, 64), 0);
        EXPECT_EQ(mGrabber.write(FG_HEIGHT, 32), 0);
        return 64 * 32;
    }

    AppletLibrary mApplet{kApplet};
    Grabber mGrabber{mApplet};
};

TEST_F(HostLibraryTest, TypedAccessAnswersWithTheAppletsCodes) {
    int32_t width = 0;
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 512), FG_OK);
    EXPECT_EQ(mGrabber.read(FG_WIDTH, width), FG_OK);
    EXPECT_EQ(width, 512);
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 500), FG_NOT_A_STEP);
    EXPECT_EQ(mGrabber.lastError(), FG_NOT_A_STEP);
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 512.0), FG_INVALID_ARGUMENT);
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 512, 1), FG_INVALID_PORT);
    double revision = 0;
    EXPECT_EQ(mGrabber.read(FG_REVNR, revision), FG_OK);
    EXPECT_EQ(revision, 3.008);
    int32_t minimum = 0;
    int32_t maximum = 0;
    EXPECT_EQ(mGrabber.limits(FG_WIDTH, minimum, maximum), FG_OK);
    EXPECT_EQ(minimum, 32);
    EXPECT_EQ(maximum, 65536);
    EXPECT_EQ(mGrabber.access(FG_WIDTH), 3);
    EXPECT_EQ(mGrabber.limitWidth(FG_WIDTH), 4U);
    EXPECT_EQ(mGrabber.limitWidth(FG_FPGA_CLK), 8U);
    EXPECT_EQ(mGrabber.limitWidth(FG_DOC_URL), 0U);
}

TEST_F(HostLibraryTest, CatalogueHoldsEveryParameterOnce) {
    const ParameterCatalogue catalogue(mGrabber);
    std::set<int> ids;
    for (const ParameterInfo& parameter : catalogue.parameters()) EXPECT_TRUE(ids.insert(parameter.id).second);
    EXPECT_EQ(static_cast<int>(ids.size()), mGrabber.functions().getNrOfParameter(mGrabber.handle()));
    const ParameterInfo* access = catalogue.find("global_access");
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->type, ParameterType::Enumeration);
    ASSERT_EQ(access->entries.size(), 4U);
    EXPECT_EQ(access->entries[2].value, 3);
    EXPECT_EQ(access->entries[2].displayName, "Read Write");
    EXPECT_EQ(access->group, "Miscellaneous");
    EXPECT_EQ(catalogue.find("FG_"), nullptr);
    EXPECT_EQ(catalogue.find(""), nullptr);
}

TEST_F(HostLibraryTest, FramesCarryNumberTagLengthAndTime) {
    const BufferSet buffers(mGrabber, windowBytes(), 8);
    Acquisition acquisition(mGrabber, buffers, 8);
    ASSERT_GE(acquisition.waitFor(8, 10), 8);
    for (frameindex_t number = 2; number <= 8; ++number) {
        const Frame before = acquisition.frame(number - 1);
        const Frame frame = acquisition.frame(number);
        EXPECT_EQ(frame.number, number);
        EXPECT_EQ(frame.length, buffers.bytes());
        EXPECT_EQ(frame.bytes.size(), buffers.bytes());
        EXPECT_GT(frame.tag, before.tag);
        EXPECT_GT(frame.timeStamp, before.timeStamp);
        EXPECT_FALSE(acquisition.isOverwritten(number));
    }
    EXPECT_EQ(acquisition.stop(), FG_OK);
    EXPECT_EQ(acquisition.stop(), FG_OK);
}

TEST_F(HostLibraryTest, StopFromAnotherThreadEndsAWait) {
    const BufferSet buffers(mGrabber, windowBytes(), 2);
    Acquisition acquisition(mGrabber, buffers, 1);
    ASSERT_EQ(acquisition.waitFor(1, 10), 1);
    acquisition.stop();

    Acquisition endless(mGrabber, buffers, std::numeric_limits<frameindex_t>::max());
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        endless.stop();
    });
    EXPECT_LT(endless.waitFor(std::numeric_limits<frameindex_t>::max(), 600), 0);
    stopper.join();
}

TEST_F(HostLibraryTest, FrameLoopCallsBackWithEveryFrame) {
    const BufferSet buffers(mGrabber, windowBytes(), 8);
    std::vector<Frame> frames;
    const FrameLoopReport report = acquireFrames(mGrabber, buffers, {.frames = 20}, [&](const Frame& frame) {
        EXPECT_EQ(frame.bytes.size(), buffers.bytes());
        frames.push_back(frame);
        return true;
    });
    EXPECT_EQ(report.end, FrameLoopEnd::Complete);
    EXPECT_EQ(report.delivered, frames.size());
    EXPECT_EQ(report.delivered + report.overwritten, 20U);
    ASSERT_FALSE(frames.empty());
    for (size_t i = 1; i < frames.size(); ++i) {
        EXPECT_GT(frames[i].number, frames[i - 1].number);
        EXPECT_GT(frames[i].tag, frames[i - 1].tag);
        EXPECT_GT(frames[i].timeStamp, frames[i - 1].timeStamp);
    }
}

TEST_F(HostLibraryTest, FrameLoopEndsByRefusalStopOrException) {
    const BufferSet buffers(mGrabber, windowBytes(), 8);
    const FrameLoopPlan endless{.frames = FrameLoopPlan::kEndless};
    FrameLoopReport report =
        acquireFrames(mGrabber, buffers, endless, [count = 0](const Frame&) mutable { return ++count < 3; });
    EXPECT_EQ(report.end, FrameLoopEnd::Refused);
    EXPECT_EQ(report.delivered, 3U);

    std::stop_source stop;
    report = acquireFrames(
        mGrabber, buffers, endless,
        [&](const Frame&) {
            stop.request_stop();
            return true;
        },
        stop.get_token());
    EXPECT_EQ(report.end, FrameLoopEnd::Stopped);
    EXPECT_EQ(report.delivered, 1U);

    const auto fail = [](const Frame&) -> bool { throw std::runtime_error("mine"); };
    EXPECT_THROW(acquireFrames(mGrabber, buffers, endless, fail), std::runtime_error);
    // Nothing runs any more: a parameter that an acquisition locks takes a value.
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 128), FG_OK);
    EXPECT_THROW(acquireFrames(mGrabber, buffers, endless, nullptr), HostError);
    EXPECT_THROW(acquireFrames(mGrabber, buffers, {.frames = 0}, fail), HostError);
}

TEST_F(HostLibraryTest, FrameLoopCountsWhatASlowCallbackMissed) {
    const BufferSet buffers(mGrabber, windowBytes(), 2);
    const FrameLoopReport report = acquireFrames(mGrabber, buffers, {.frames = 30}, [](const Frame& frame) {
        if (frame.number == 1) std::this_thread::sleep_for(std::chrono::milliseconds(150));
        return true;
    });
    EXPECT_EQ(report.end, FrameLoopEnd::Complete);
    EXPECT_GE(report.overwritten, 5U);
    EXPECT_EQ(report.delivered + report.overwritten, 30U);
    EXPECT_EQ(report.lost(), report.overwritten + report.dropped);
}

TEST(TagGapsTest, CountsAcrossTheWrapOfTheTags) {
    TagGaps tags(3);
    const auto dropped = [&](frameindex_t number, uint32_t tag) {
        Frame frame;
        frame.number = number;
        frame.tag = tag;
        return tags.take(frame).dropped;
    };
    EXPECT_EQ(dropped(1, 0x7FFF'FFFA), 0U);
    EXPECT_EQ(dropped(2, 0x7FFF'FFFD), 0U);
    EXPECT_EQ(dropped(3, 6), 2U) << "nine frames for one picture, over the wrap";
    EXPECT_EQ(dropped(5, 12), 0U) << "the host left out picture 4";
}

TEST_F(HostLibraryTest, TwoBoardsAcquireAtTheSameTime) {
    Grabber second(mApplet, boardDevice(mApplet, 1));
    EXPECT_EQ(boardDevice(mApplet, 0), nullptr);
    EXPECT_NE(second.device(), mGrabber.device());
    const size_t bytes = windowBytes();
    ASSERT_EQ(second.write(FG_WIDTH, 96), FG_OK);
    ASSERT_EQ(second.write(FG_HEIGHT, 16), FG_OK);
    int32_t width = 0;
    ASSERT_EQ(mGrabber.read(FG_WIDTH, width), FG_OK);
    EXPECT_EQ(width, 64);

    // Neither goes on from its first frame before the other has one.
    std::latch bothRun(2);
    const auto acquire = [&](Grabber& grabber, size_t size) {
        const BufferSet buffers(grabber, size, 64);
        uint64_t whole = 0;
        const FrameLoopReport report = acquireFrames(grabber, buffers, {.frames = 20}, [&](const Frame& frame) {
            if (frame.number == 1) bothRun.arrive_and_wait();
            if (frame.bytes.size() == size && frame.length == size) ++whole;
            return true;
        });
        EXPECT_EQ(report.end, FrameLoopEnd::Complete);
        EXPECT_EQ(whole, 20U);
    };
    std::jthread other([&] { acquire(second, size_t{96} * 16); });
    acquire(mGrabber, bytes);
    other.join();
    EXPECT_THROW(boardDevice(mApplet, -1), HostError);
}

TEST_F(HostLibraryTest, BufferOfAnEarlierPictureCountsAsOverwritten) {
    const BufferSet buffers(mGrabber, windowBytes(), 4);
    Acquisition acquisition(mGrabber, buffers, 6);
    ASSERT_EQ(acquisition.waitFor(6, 10), 6);
    EXPECT_TRUE(acquisition.isOverwritten(2));
    EXPECT_FALSE(acquisition.isOverwritten(3));
    EXPECT_TRUE(acquisition.isOverwritten(7));
}

TEST_F(HostLibraryTest, PictureLargerThanItsBufferStaysInside) {
    const size_t whole = windowBytes();
    const BufferSet buffers(mGrabber, whole / 2, 2);
    Acquisition acquisition(mGrabber, buffers, 2);
    ASSERT_EQ(acquisition.waitFor(2, 10), 2);
    EXPECT_EQ(acquisition.frame(1).bytes.size(), whole / 2);
}

TEST_F(HostLibraryTest, FrameLoopTellsASilentCameraFromAStop) {
    ASSERT_EQ(mGrabber.write(FG_TRIGGERMODE, 4), FG_OK);
    ASSERT_EQ(mGrabber.write(FG_EXSYNCON, 1), FG_OK);
    const BufferSet buffers(mGrabber, windowBytes(), 2);
    const auto never = [](const Frame&) { return false; };
    const FrameLoopReport silent = acquireFrames(mGrabber, buffers, {.timeoutSeconds = 1}, never);
    EXPECT_EQ(silent.end, FrameLoopEnd::TimedOut);
    EXPECT_LT(silent.code, 0);

    std::stop_source stop;
    std::jthread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        stop.request_stop();
    });
    const FrameLoopPlan patient{.timeoutSeconds = 600};
    EXPECT_EQ(acquireFrames(mGrabber, buffers, patient, never, stop.get_token()).end, FrameLoopEnd::Stopped);
}

TEST_F(HostLibraryTest, ParametersCanChangeAgainAfterAnAcquisitionWentOutOfScope) {
    const BufferSet buffers(mGrabber, windowBytes(), 2);
    std::optional<Acquisition> acquisition(std::in_place, mGrabber, buffers, 5);
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 128), FG_ACQUISITION_RUNNING);
    acquisition.reset();
    EXPECT_EQ(mGrabber.write(FG_WIDTH, 128), FG_OK);
}

}  // namespace
}  // namespace tooltest
