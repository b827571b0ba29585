#pragma once

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "simulation/board/AcquisitionPath.h"
#include "simulation/board/BoardCodes.h"
#include "simulation/board/BufferSet.h"
#include "simulation/board/Camera.h"
#include "simulation/board/CcLine.h"
#include "simulation/board/Disturbances.h"
#include "simulation/board/DmaEngine.h"
#include "simulation/board/FrequencyCounter.h"
#include "simulation/board/RegisterStore.h"
#include "simulation/board/Schedule.h"
#include "simulation/board/Trace.h"
#include "simulation/design/Design.h"
#include "simulation/support/FaultPlan.h"

namespace simulation {

/// What a host asks of the DMA.
struct DmaRequest {
    static constexpr int kContinuous = 16;
    static constexpr int kHandShake = 32;

    int port = 0;
    int32_t firstBuffer = 0;
    size_t length = 0;
    int mode = kContinuous;
    int32_t transfers = 0;  // negative = until it is stopped
};

/// One board with its camera. Any thread may call any operation but configure(); only BufferSet::wait blocks for
/// longer.
class Board {
public:
    static constexpr unsigned kConnectors = 3;
    static constexpr int kLinkBits = 7;
    static constexpr uint32_t kMostInputs = 0xFF;  // eight digital inputs, all high

    Board() = default;
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    // The bench: what a person would set up around the board. A refusal changes nothing; what the frames depend on
    // answers kBusy while a transfer runs.

    [[nodiscard]] Outcome setCameraFolder(const std::filesystem::path& folder);
    [[nodiscard]] Outcome setScene(PictureSize size);
    [[nodiscard]] Outcome setGeometry(int number);

    /// \param text the name or the number of a geometry.
    [[nodiscard]] Outcome setGeometry(const std::string& text);
    [[nodiscard]] Outcome setRate(double rateHz);
    void setCameraTrigger(CameraTrigger trigger);
    [[nodiscard]] Outcome setReadoutTime(double us);
    [[nodiscard]] Outcome setMode(ClockMode mode);
    void setLink(bool isUp);

    /// \param levels bit i is the level of digital input i, up to kMostInputs; it stays through configurations.
    [[nodiscard]] Outcome setInputs(uint32_t levels);

    /// A short pulse on a digital input, 0 to 7.
    [[nodiscard]] Outcome pulse(unsigned input);

    /// Such pulses at a rate, Camera::kLowestRateHz to Camera::kHighestRateHz; 0 ends them. They stay through
    /// configurations.
    [[nodiscard]] Outcome setInputRate(unsigned input, double rateHz);

    /// The levels of the digital outputs, bit by bit, or kNotConfigured.
    [[nodiscard]] int outputs() const;

    /// What drives the camera control line \p line, 0 to 3. \return 0, kNotConfigured or kBadArgument.
    [[nodiscard]] int ccLine(unsigned line, CcLine& state) const;

    /// What the trigger block does. \return 0 or kNotConfigured.
    [[nodiscard]] int triggerReport(TriggerReport& report);

    [[nodiscard]] Disturbances& disturbances() { return mDisturbances; }
    [[nodiscard]] FaultPlan& faults() { return mFaults; }
    [[nodiscard]] Trace& trace() { return mTrace; }
    [[nodiscard]] TransferStatistics statistics() const { return mDma.statistics(); }
    [[nodiscard]] size_t openBufferSets() const;

    // The board as the host sees it.

    /// Loads \p design into the chip: all registers get their initial values. A running transfer ends. No other
    /// thread may use the board meanwhile. \return 0, or kBadDesign for null.
    [[nodiscard]] int configure(const Design* design);

    /// \return 0, kNotConfigured, kNoRegister or kReadOnly; \p value is borrowed for the call.
    [[nodiscard]] int writeRegister(int handle, uint64_t value);
    [[nodiscard]] int readRegister(int handle, uint64_t* value);

    /// \return the status bits of a connector, 0 for one that does not exist, or kNotConfigured.
    [[nodiscard]] int cameraStatus(unsigned connector);

    /// \return the handle of the new set, or null where the numbers are out of range.
    [[nodiscard]] BufferSet* createBuffers(size_t totalSize, int32_t count);

    /// The set behind a handle; null for one that is not of this board.
    [[nodiscard]] std::shared_ptr<BufferSet> buffers(const void* handle) const;

    /// Forgets the set; a transfer into it ends first. \return 0 or kBadArgument.
    [[nodiscard]] int freeBuffers(const void* handle);

    /// \return 0, kNotConfigured, kBadArgument or kBusy.
    [[nodiscard]] Outcome startDma(const DmaRequest& request, const void* buffers);

    /// \return 0 whether or not a transfer ran; kBadArgument for a port that the board does not have.
    [[nodiscard]] int stopDma(int port);

    /// Ends the transfer without a word in the trace.
    void halt() { mDma.stop(); }

private:
    [[nodiscard]] Outcome setSource(std::unique_ptr<PictureSource> source, const std::string& why);
    [[nodiscard]] Outcome setGeometry(const ReadoutGeometry* geometry, const std::string& text);
    void findRoles();
    [[nodiscard]] int store(int handle, uint64_t value);
    void traceWrite(int handle, uint64_t value, int code);

    Disturbances mDisturbances;
    FaultPlan mFaults;
    Trace mTrace;
    RegisterStore mRegisters;
    FrequencyCounter mCounter;
    Camera mCamera;
    Schedule mSchedule{mRegisters, mCamera};
    AcquisitionPath mPath{mRegisters, mCamera, mDisturbances};

    /// What a write to a register does besides storing the value.
    struct Role {
        bool isTimed = false;
        bool isGate = false;
        bool isReset = false;
        bool isStrobe = false;
        bool isCounterControl = false;

        bool operator==(const Role&) const = default;
    };

    std::atomic<bool> mIsConfigured{false};
    std::vector<Role> mRoles;  // by handle, set by configure(), as are the handles
    int mCounterValue = 0;
    int mDigitalIn = 0;
    int mDigitalOut = 0;
    int mCcConfig = 0;

    mutable std::mutex mSetupMutex;  // start of a transfer against changes of what it depends on
    uint32_t mInputs = 0;            // guarded by mSetupMutex
    mutable std::mutex mBuffersMutex;
    std::map<const void*, std::shared_ptr<BufferSet>> mBuffers;  // guarded by mBuffersMutex

    DmaEngine mDma{mPath, mSchedule, mDisturbances};  // last: its thread ends before anything else goes
};

}  // namespace simulation
