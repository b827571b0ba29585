// The fault table: one call of the runtime libraries, or one allocation, fails in each step of a grabber's life. After
// every row the step has answered the code that is published for it, and the grabber is usable or wholly released.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/TemporaryFolder.h"
#include "tests/faults/Allocations.h"
#include "tests/faults/FaultyRuntime.h"

namespace {

int gRows = 0;  // faults that happened, in the whole program

/// Tells the size of the table after the last test.
class RowCount : public testing::Environment {
public:
    void TearDown() override { std::printf("fault rows: %d\n", gRows); }
};
[[maybe_unused]] const testing::Environment* const kRowCount = testing::AddGlobalTestEnvironment(new RowCount);

/// Positions of a fault: every call up to the 200th, then sparser, because a knee table alone is 7168 writes.
int nextPosition(int n) { return n < 200 ? n + 1 : n + n / 16; }

class FaultTableTest : public testing::Test {
protected:
    int open() {
        free();
        int err = -999;
        mHandle.Master = Std_entry(FaultyRuntime::device(), &err, 0);
        return err;
    }
    void free() {
        Fg_FreeGrabber(&mHandle);
        mHandle.Master = nullptr;
    }
    void TearDown() override { free(); }

    int start() { return Fg_AcquireEx(&mHandle, 0, 5, 1, FaultyRuntime::memory()); }
    int stop() { return Fg_stopAcquireEx(&mHandle, 0, FaultyRuntime::memory(), 0); }
    int set(int id, void* value) { return Fg_setParameterWithType(&mHandle, id, value, 0, FG_PARAM_TYPE_AUTO); }
    int getInt(int id) {
        int value = -1;
        EXPECT_EQ(Fg_getParameterWithType(&mHandle, id, &value, 0, FG_PARAM_TYPE_AUTO), 0);
        return value;
    }
    std::string document() {
        size_t size = 0;
        EXPECT_EQ(Fg_getParameterInfoXML(&mHandle, 0, nullptr, &size), 0);
        std::string text(size, '?');
        EXPECT_EQ(Fg_getParameterInfoXML(&mHandle, 0, text.data(), &size), 0);
        return text;
    }

    /// Lets each call of each operation fail in turn, until \p step passes without a fault.
    /// \param check gets the operation and what the step answered with the fault
    template <class Step, class Check>
    void failEachCall(Step step, Check check) {
        for (int i = 0; i < kOperations; ++i) {
            const auto operation = static_cast<Operation>(i);
            for (int n = 1;; n = nextPosition(n)) {
                runtime.plan(operation, n);
                const int code = step();
                if (!runtime.takeFault()) break;
                ++gRows;
                check(operation, code);
                ASSERT_FALSE(HasFailure()) << "operation " << i << ", call " << n;
            }
        }
    }
    /// The same with allocations.
    template <class Step, class Check>
    void failEachAllocation(Step step, Check check) {
        for (int n = 1;; n = nextPosition(n)) {
            allocations::plan(n);
            const int code = step();
            if (!allocations::takeFault()) return;
            ++gRows;
            check(code);
            ASSERT_FALSE(HasFailure()) << "allocation " << n;
        }
    }

    FaultyRuntime runtime;
    Fg_Struct mHandle{};
};

/// A grabber that has been opened without a fault.
class OpenedGrabberTest : public FaultTableTest {
protected:
    OpenedGrabberTest() { EXPECT_EQ(open(), 0); }

    TemporaryFolder mFiles;
};

TEST_F(FaultTableTest, FailingCallsRefuseTheOpenOrLeaveAUsableGrabber) {
    ASSERT_EQ(open(), 0);  // what is made once for the process is made here
    ASSERT_EQ(start(), 0);
    ASSERT_EQ(stop(), 0);
    free();
    const long alive = allocations::alive();
    failEachCall([this] { return open(); },
                 [&](Operation operation, int code) {
                     const bool isRefused = operation == Operation::kConfigure || operation == Operation::kLoadDesign;
                     EXPECT_EQ(code, isRefused ? FaultyRuntime::kFault : 0);
                     EXPECT_EQ(mHandle.Master == nullptr, isRefused);
                     if (!isRefused) {
                         EXPECT_EQ(start(), 0);
                         EXPECT_EQ(stop(), 0);
                         EXPECT_EQ(getInt(FG_WIDTH), 1024);
                     }
                     free();
                     EXPECT_EQ(runtime.designsOpen(), 0);
                     EXPECT_EQ(allocations::alive(), alive);
                 });
}

TEST_F(FaultTableTest, FailingAllocationsRefuseTheOpenAndUnloadTheDesignOnce) {
    ASSERT_EQ(open(), 0);
    free();
    const long alive = allocations::alive();
    int unloads = runtime.unloads();
    failEachAllocation([this] { return open(); },
                       [&](int code) {
                           EXPECT_EQ(code, -500);
                           EXPECT_EQ(mHandle.Master, nullptr);
                           EXPECT_EQ(runtime.unloads(), ++unloads);
                           EXPECT_EQ(runtime.designsOpen(), 0);
                           EXPECT_EQ(allocations::alive(), alive);
                       });
    EXPECT_NE(mHandle.Master, nullptr) << "the open without a fault";
}

TEST_F(OpenedGrabberTest, DmaAloneDecidesAboutStartAndStop) {
    failEachCall([this] { return start(); },
                 [this](Operation operation, int code) {
                     const bool isRefused = operation == Operation::kDmaStartRead;
                     EXPECT_EQ(code, isRefused ? FaultyRuntime::kFault : 0);
                     EXPECT_EQ(Fg_getLastErrorNumber(&mHandle), code);
                     EXPECT_EQ(getInt(FG_DMASTATUS), isRefused ? 0 : 1);
                     EXPECT_EQ(stop(), isRefused ? FG_NOT_STARTED : 0);
                     // The row that ends an operation's positions starts for good.
                     EXPECT_EQ(start(), 0);
                     EXPECT_EQ(stop(), 0);
                 });
    std::ignore = stop();
    failEachCall(
        [this] {
            std::ignore = start();
            return stop();
        },
        [this](Operation operation, int code) {
            const bool isStop = operation == Operation::kDmaStop;
            EXPECT_EQ(code, isStop ? FG_DMA_STOP_FAILED : operation == Operation::kDmaStartRead ? FG_NOT_STARTED : 0);
            if (isStop) {
                EXPECT_EQ(getInt(FG_DMASTATUS), 1) << "a stop can be tried again";
                EXPECT_EQ(stop(), 0);
            }
        });
    EXPECT_EQ(getInt(FG_DMASTATUS), 0);
    failEachAllocation(
        [this] {
            std::ignore = start();
            return stop();
        },
        [this](int) { EXPECT_EQ(start() == 0 || stop() == 0, true); });
    runtime.plan(Operation::kDmaTestBuffer, 1);
    EXPECT_EQ(Fg_getLastPicNumberEx(&mHandle, 0, FaultyRuntime::memory()), -2120);
    runtime.plan(Operation::kDmaWaitForBuffer, 1);
    EXPECT_EQ(Fg_getLastPicNumberBlockingEx(&mHandle, 1, 0, 5, FaultyRuntime::memory()), FaultyRuntime::kFault);
    EXPECT_TRUE(runtime.takeFault());
    gRows += 2;
}

TEST_F(OpenedGrabberTest, SaveAndLoadSurviveEveryFault) {
    const std::string reference = mFiles.file("reference.mcf");
    const std::string other = mFiles.file("other.mcf");
    int width = 512;
    ASSERT_EQ(set(FG_WIDTH, &width), 0);
    ASSERT_EQ(Fg_saveConfig(&mHandle, reference.c_str()), 0);
    const std::string saved = mFiles.content("reference.mcf");
    const auto save = [&] { return Fg_saveConfig(&mHandle, other.c_str()); };
    const auto load = [&] { return Fg_loadConfig(&mHandle, reference.c_str()); };
    const auto isWhole = [&] {
        ASSERT_EQ(load(), 0);
        ASSERT_EQ(save(), 0);
        ASSERT_EQ(mFiles.content("other.mcf"), saved);
    };
    failEachCall(save,
                 [](Operation, int code) { EXPECT_EQ(code, 0) << "a value that cannot be read shows in its line"; });
    failEachCall(load, [&](Operation, int code) {
        EXPECT_EQ(code, 0) << "a refused value does not keep the others from being applied";
    });
    isWhole();
    const auto isRefused = [&](int code) {
        EXPECT_EQ(code, -500);
        if (gRows % 8 == 0) isWhole();
    };
    failEachAllocation(save, isRefused);
    failEachAllocation(load, isRefused);
    isWhole();
}

TEST_F(OpenedGrabberTest, DescriptionsAreWholeOrRefused) {
    const std::string whole = document();
    const long alive = allocations::alive();
    failEachAllocation(
        [&] {
            size_t size = 0;
            const int code = Fg_getParameterInfoXML(&mHandle, 0, nullptr, &size);
            return code == 0 && size != whole.size() ? 1 : code;
        },
        [&](int code) {
            EXPECT_EQ(code, -500) << "1: a document that lacks something";
            EXPECT_EQ(allocations::alive(), alive);
        });
    failEachAllocation([&] { return Fg_getParameterInfo(&mHandle, 0) == nullptr ? -500 : 0; },
                       [&](int code) {
                           EXPECT_EQ(code, -500);
                           EXPECT_NE(Fg_getParameterInfo(&mHandle, 0), nullptr);
                       });
    EXPECT_EQ(document(), whole);
}

/// Writes every parameter with a value that it takes.
class WriteFaultTest : public OpenedGrabberTest {
protected:
    /// A value in memory that is large enough for every type.
    struct Value {
        alignas(double) std::array<char, 2048> bytes{};
        std::vector<double> curve;
    };
    /// \return the parameter's present value, or one that its write takes
    Value valueOf(int id) {
        Value value;
        if (id == FG_KNEE_LUT) {
            for (int i = 0; i <= 1024; ++i) value.curve.push_back(i / 1024.0);
            const KneeLookupTable_s table{value.curve.data(), nullptr, 0, 1025, 3, 0};
            std::memcpy(value.bytes.data(), &table, sizeof table);
        } else if (id == FG_KNEE_LUT_FILE) {
            std::ignore = mFiles.file("knee.lut").copy(value.bytes.data(), value.bytes.size() - 1);
        } else if (id == FG_KNEE_LUT_SAVE_LOAD_FILE) {
            value.bytes[0] = 1;
        } else {
            EXPECT_GE(Fg_getParameterWithType(&mHandle, id, value.bytes.data(), 0, FG_PARAM_TYPE_AUTO), -3000) << id;
        }
        return value;
    }
    std::vector<int> writable() {
        std::vector<int> ids;
        for (int i = 0; i < Fg_getNrOfParameter(&mHandle); ++i) {
            const int id = Fg_getParameterId(&mHandle, i);
            Value value = valueOf(id);
            if (set(id, value.bytes.data()) == 0) ids.push_back(id);
        }
        return ids;
    }
};

/// What the write of a parameter answers when one of its register writes fails: the library's code, unless it is here.
// clang-format off
const std::map<int, std::set<int>> kOtherCodes{
    {FG_TIMEOUT, {}}, {FG_GLOBAL_ACCESS, {}},  // write no register
    {FG_USEDVAL, {-1}}, {FG_TRIGGERINSRC, {-1}}, {FG_EXPOSURE, {-1}},
    {FG_PRESCALER, {0}}, {FG_IMG_SELECT_PERIOD, {0}}, {FG_IMG_SELECT, {0}},
    {FG_TRIGGERMODE, {-1, 0}}, {FG_FORMAT, {FaultyRuntime::kFault, 0}},
    {FG_CAMERA_LINK_CAMTYP, {FaultyRuntime::kFault, -1, 0}},
};
// clang-format on
const std::set<int> kFollowTriggerMode{FG_FRAMESPERSEC, FG_TRIGGERMODE, FG_EXPOSURE, FG_PRESCALER};

TEST_F(WriteFaultTest, EveryWriteAnswersItsCodeAndCanBeRepeated) {
    std::set<int> seen;
    for (int mode : {0, 1, 2}) {  // what may be written depends on the trigger mode
        ASSERT_EQ(set(FG_TRIGGERMODE, &mode), 0);
        for (const int id : writable()) {
            if (seen.contains(id) && !kFollowTriggerMode.contains(id)) continue;
            const auto row = kOtherCodes.find(id);
            const std::set<int> codes = row == kOtherCodes.end() ? std::set{FaultyRuntime::kFault} : row->second;
            Value value = valueOf(id);
            const auto write = [&] { return set(id, value.bytes.data()); };
            failEachCall(write, [&](Operation operation, int code) {
                const bool isWrite = operation == Operation::kRegisterWrite;
                EXPECT_TRUE(isWrite ? codes.contains(code) : code == 0) << id << " answered " << code;
                EXPECT_EQ(Fg_getLastErrorNumber(&mHandle), code);
                EXPECT_EQ(write(), 0);
            });
            failEachAllocation(write, [&](int code) {
                EXPECT_EQ(code, -500) << id;
                EXPECT_EQ(write(), 0);
            });
            ASSERT_FALSE(HasFailure());
            seen.insert(id);
        }
    }
    EXPECT_EQ(seen.size(), 58U);
}

}  // namespace
