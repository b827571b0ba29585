#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "AcquireSettings.h"
#include "BlockPicture.h"
#include "Command.h"
#include "Histogram.h"
#include "PictureSource.h"
#include "PictureWindow.h"
#include "Session.h"
#include "SilenceReason.h"
#include "StateOptions.h"
#include "StopSignals.h"
#include "TerminalScreen.h"
#include "ToolError.h"
#include "host/Acquisition.h"
#include "host/BufferSet.h"
#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

constexpr frameindex_t kBuffers = 8;
/// Between two looks at the board and the keyboard.
constexpr int kStepMs = 33;
constexpr int kHistogramRows = 4;
constexpr int kSignalExitBase = 128;
constexpr std::chrono::milliseconds kRateWindow{500};

using Clock = std::chrono::steady_clock;

/// Pictures per second, counted by the board's picture numbers.
class RateMeter {
public:
    void add(frameindex_t number) {
        const Clock::time_point now = Clock::now();
        if (now - mSince < kRateWindow) return;
        const double seconds = std::chrono::duration<double>(now - mSince).count();
        if (mNumber != 0) mRate = static_cast<double>(number - mNumber) / seconds;
        mNumber = number;
        mSince = now;
    }
    [[nodiscard]] double rate() const { return mRate; }

private:
    Clock::time_point mSince{};
    frameindex_t mNumber = 0;
    double mRate = 0;
};

class ViewCommand : public Command {
public:
    explicit ViewCommand(CLI::App& options) : mSource(options), mState(options) {
        options.add_option("--timeout", mTimeout, "longest wait for a picture, in seconds")
            ->check(CLI::Range(1, 1'000'000))
            ->type_name("SECONDS")
            ->capture_default_str();
    }

    int run(Session& session) override;

private:
    /// Shows pictures until q or a signal ends it. \return whether the camera fell silent
    bool watch(host::Acquisition& acquisition, const StopSignals& signals, TerminalScreen& screen);
    [[nodiscard]] std::string draw(const Picture& picture, frameindex_t number) const;

    PictureSource mSource;
    StateOptions mState;
    int mTimeout = 5;
    PictureWindow mWindow;
    RateMeter mMeter;
};

int ViewCommand::run(Session& session) {
    mState.check();
    mSource.prepareCamera();
    StopSignals signals;
    bool isSilent = false;
    {
        TerminalScreen screen;
        host::Grabber& grabber = session.grabber();
        mState.load(grabber);
        mSource.select(grabber);
        mState.set(grabber);
        mWindow = readWindow(grabber);
        checkMemory(mWindow, kBuffers + 1);
        const host::BufferSet buffers(grabber, static_cast<size_t>(mWindow.bytes()), kBuffers);
        host::Acquisition acquisition(grabber, buffers, kEndless);
        isSilent = watch(acquisition, signals, screen);
    }
    if (isSilent) {
        throw ToolError(kExitEnvironment, fmt::format("time-out: no picture arrived within {} s\n  {}", mTimeout,
                                                      explainSilence(session.grabber())));
    }
    return signals.received() == 0 ? kExitOk : kSignalExitBase + signals.received();
}

bool ViewCommand::watch(host::Acquisition& acquisition, const StopSignals& signals, TerminalScreen& screen) {
    std::vector<std::byte> pixels;
    frameindex_t shown = 0;
    Clock::time_point lastArrival = Clock::now();
    while (signals.received() == 0) {
        const frameindex_t newest = acquisition.lastPicture();
        if (newest < 0) {
            throw host::HostError(newest, "the board ended: " + host::describeResultCode(newest));
        }
        if (newest > shown) {
            const host::Frame frame = acquisition.frame(newest);
            pixels.assign(frame.bytes.begin(), frame.bytes.end());
            pixels.resize(static_cast<size_t>(mWindow.bytes()));
            mMeter.add(newest);
            lastArrival = Clock::now();
            shown = newest;
            if (!screen.show(draw({mWindow.width, mWindow.height, pixels}, newest))) return false;
        } else if (Clock::now() - lastArrival > std::chrono::seconds(mTimeout)) {
            return true;
        }
        const std::optional<char> key = screen.key(kStepMs);
        if (key && (*key == 'q' || *key == 'Q')) return false;
    }
    return false;
}

std::string ViewCommand::draw(const Picture& picture, frameindex_t number) const {
    const TerminalScreen::Size size = TerminalScreen::size();
    // The last column stays free: a letter there would wrap in some terminals.
    const int columns = std::max(size.columns - 1, 1);
    const int rows = std::max(size.rows - kHistogramRows - 1, 1);
    const Histogram histogram(picture.pixels);
    std::string status =
        fmt::format("picture {}  {:.1f}/s  {} x {}  {} to {}, mean {:.1f}  q quits", number, mMeter.rate(),
                    picture.width, picture.height, histogram.darkest(), histogram.brightest(), histogram.mean());
    status.resize(std::min(status.size(), static_cast<size_t>(columns)));
    std::string text = drawBlocks(picture, columns, rows, TerminalScreen::hasTrueColour()) + '\n';
    if (size.rows > kHistogramRows + 2) text += drawBars(histogram, columns, kHistogramRows) + '\n';
    return text + status;
}

}  // namespace

std::unique_ptr<Command> makeViewCommand(CLI::App& options) { return std::make_unique<ViewCommand>(options); }

}  // namespace quillon::tool
