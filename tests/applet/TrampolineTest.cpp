// Every operation of both runtime libraries through the applet's exported function of the same name.
#include <cstdio>
#include <type_traits>

#include "tests/applet/AppletLibrary.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

dma_mem* memory() { return handleOf<dma_mem>(0x3003); }
fpga_design* design() { return handleOf<fpga_design>(0x2002); }

class TrampolineTest : public testing::Test {
protected:
    TrampolineTest()
        : mApplet(mTree.addApplet()),
          hardware(mTree.addStub("stub_tavo_hw", "tavo_hw")),
          runtime(mTree.addStub("stub_haprt", "haprt")) {}

    /// Calls an operation, with an answer set, and expects one recorded call.
    template <class Function, class... Arguments>
    auto call(const Stub& stub, const char* name, const std::string& expected, Arguments... arguments) {
        stub.answer(name, kAnswer);
        stub.clear();
        const auto result = mApplet.function<Function>(name)(arguments...);
        EXPECT_THAT(stub.takeCalls(), ElementsAre(name + (" " + expected)));
        return result;
    }
    /// The same for a hardware operation, whose first argument is the device; its answer is expected, too.
    template <class Function, class... Arguments>
    void same(const char* name, const std::string& expected, Arguments... arguments) {
        const auto result = call<Function>(hardware, name, "0x1001 " + expected, device(), arguments...);
        EXPECT_EQ(result, (std::invoke_result_t<Function, FgDevice*, Arguments...>)(kAnswer)) << name;
    }
    template <class Function>
    Function* operation(const char* name) {
        return mApplet.function<Function>(name);
    }

    static constexpr intptr_t kAnswer = 0x41;
    Installation mTree;
    Library mApplet;
    Stub hardware;
    Stub runtime;
};

TEST_F(TrampolineTest, HardwareOperationsPassTheirArgumentsInOrder) {
    uint64_t value = 0;
    uint32_t words[4] = {};
    char buffer[1] = {};
    const auto address = [](const void* pointer) {
        char text[32];
        std::snprintf(text, sizeof text, "0x%zx", static_cast<size_t>(reinterpret_cast<uintptr_t>(pointer)));
        return std::string(text);
    };
    same<decltype(TavoConfigureFpga)>("TavoConfigureFpga", "0x2002", design());
    same<decltype(TavoConfigureSlave)>("TavoConfigureSlave", "0x2002", design());
    same<decltype(TavoRegisterWrite)>("TavoRegisterWrite", "7 18364758544493064720", 7, uint64_t{0xFEDCBA9876543210});
    same<decltype(TavoRegisterRead)>("TavoRegisterRead", "7 " + address(&value), 7, &value);
    same<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer", "4096 3", size_t{4096}, 3);
    same<decltype(TavoFreeVirtualUserBuffer)>("TavoFreeVirtualUserBuffer", "0x3003", memory());
    same<decltype(TavoAddUserBuffer)>("TavoAddUserBuffer", "0x3003 " + address(buffer) + " 4096 2", memory(),
                                      static_cast<void*>(buffer), size_t{4096}, 2);
    same<decltype(TavoDelUserBuffer)>("TavoDelUserBuffer", "0x3003 2", memory(), 2);
    same<decltype(TavoGetBufferStatus)>("TavoGetBufferStatus", "0x3003 0 5 0x4004", memory(), 99, 5,
                                        handleOf<fx_buf_status>(0x4004));
    same<decltype(TavoDmaStartRead)>("TavoDmaStartRead", "1 2 3 0x3003 16 5 6 7", 1, 2, size_t{3}, memory(), 16, 5, 6,
                                     7);
    same<decltype(TavoDmaStartWrite)>("TavoDmaStartWrite", "1 2 3 0x3003 32 5 6 7", 1, 2, size_t{3}, memory(), 32, 5, 6,
                                      7);
    same<decltype(TavoDmaStop)>("TavoDmaStop", "1 2 3", 1, 2, 3);
    same<decltype(TavoDmaWaitForBuffer)>("TavoDmaWaitForBuffer", "1 2 0x3003 4", 1, 2, memory(), 4);
    same<decltype(TavoDmaTestBuffer)>("TavoDmaTestBuffer", "1 0x3003", 1, memory());
    same<decltype(TavoGetDmaTag)>("TavoGetDmaTag", "0x3003 -1", memory(), -1);
    same<decltype(TavoGetDmaTimeStamp)>("TavoGetDmaTimeStamp", "0x3003 4", memory(), 4);
    same<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong", "0x3003 4", memory(), 4);
    same<decltype(TavoGetDmaLength)>("TavoGetDmaLength", "0x3003 4", memory(), 4);
    same<decltype(TavoDataQueueReadBufferLong)>("TavoDataQueueReadBufferLong", "0 " + address(words) + " 4 9", 0,
                                                static_cast<uint32_t*>(words), 4, 9);
    same<decltype(TavoDataQueueClear)>("TavoDataQueueClear", "2", 2);
    same<decltype(TavoGetBufferSize)>("TavoGetBufferSize", "0x3003", memory());
    same<decltype(TavoGetNrOfSubbuffer)>("TavoGetNrOfSubbuffer", "0x3003", memory());
    same<decltype(TavoGetCameraStatusExtended)>("TavoGetCameraStatusExtended", "2", 2u);
}

TEST_F(TrampolineTest, RuntimeOperationsPassTheirArgumentsInOrder) {
    EXPECT_EQ((call<decltype(HapLoadHapFileWithType)>(runtime, "HapLoadHapFileWithType", "a.stdhap 2626 1", "a.stdhap",
                                                      2626, 1)),
              handleOf<fpga_design>(0x41));
    runtime.clear();
    EXPECT_EQ(operation<decltype(HapLoadDesignFromBuffer)>("HapLoadDesignFromBuffer")(nullptr, 5, 1), nullptr);
    EXPECT_THAT(runtime.takeCalls(), ElementsAre("HapLoadDesignFromBuffer null 5 1"));
    EXPECT_EQ((call<decltype(HapUnloadHapFile)>(runtime, "HapUnloadHapFile", "0x2002", design())), 0x41);
    EXPECT_EQ((call<decltype(HapGetNrOfRegister)>(runtime, "HapGetNrOfRegister", "0x2002", design())), 0x41);
    EXPECT_EQ((call<decltype(HapGetRegisterName)>(runtime, "HapGetRegisterName", "0x2002 3", design(), 3)),
              handleOf<const char>(0x41));
    EXPECT_EQ((call<decltype(HapGetRegisterDirection)>(runtime, "HapGetRegisterDirection", "0x2002 3", design(), 3)),
              0x41);
    EXPECT_EQ((call<decltype(HapGetUserInfoByName)>(runtime, "HapGetUserInfoByName", "0x2002 DESIGN_NAME", design(),
                                                    "DESIGN_NAME")),
              handleOf<const char>(0x41));
    EXPECT_EQ((call<decltype(HapGetRegisterByName)>(runtime, "HapGetRegisterByName", "0x2002 AAAreaWidth", design(),
                                                    "AAAreaWidth")),
              1);
    EXPECT_EQ((call<decltype(HapGetRegisterBitRange)>(runtime, "HapGetRegisterBitRange", "0x2002 1", design(), 1)), 12);
}

struct OpaqueOperation {
    const char* name;
    bool isPointer;
};

// The operations whose arguments only the libraries know, by family.
const OpaqueOperation kOpaqueTavo[] = {
#define FABRIX_TAVO_OPAQUE(result, name) {#name, std::is_pointer_v<result>},
#include "fabrix/runtime_operations.inc"
};
const OpaqueOperation kOpaqueHap[] = {
#define FABRIX_HAP_OPAQUE(result, name) {#name, std::is_pointer_v<result>},
#include "fabrix/runtime_operations.inc"
};

using OpaqueTavo = intptr_t(FgDevice*, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t);
using OpaqueHap = intptr_t(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t);

TEST_F(TrampolineTest, OpaqueOperationsPassEightArguments) {
    for (const OpaqueOperation& row : kOpaqueTavo) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ((call<OpaqueTavo>(hardware, row.name, "0x1001 2 3 4 5 6 7 8", device(), 2u, 3u, 4u, 5u, 6u, 7u, 8u)),
                  0x41);
    }
    for (const OpaqueOperation& row : kOpaqueHap) {
        SCOPED_TRACE(row.name);
        const std::string name = row.name;
        if (name == "HapGetParamValue64" || name == "HapGetParamValueDouble") continue;  // below
        EXPECT_EQ((call<OpaqueHap>(runtime, row.name, "1 2 3 4 5 6 7 8", 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u)), 0x41);
    }
    runtime.answer("HapGetParamValue64", INT64_C(0x7EDCBA9876543210));
    runtime.answer("HapGetParamValueDouble", 17);
    EXPECT_EQ(operation<decltype(HapGetParamValue64)>("HapGetParamValue64")(1, 2, 3, 4, 5, 6, 7, 8),
              0x7EDCBA9876543210U);
    EXPECT_EQ(operation<decltype(HapGetParamValueDouble)>("HapGetParamValueDouble")(1, 2, 3, 4, 5, 6, 7, 8), 17.0);
    EXPECT_EQ((call<OpaqueHap>(hardware, "TavoDmaPulseNextBuffer", "0 2 3 4 5 6 7 8", 0u, 2u, 3u, 4u, 5u, 6u, 7u, 8u)),
              0x41)
        << "no device check";
}

TEST_F(TrampolineTest, NullDeviceIsRefusedAfterTheLibraryWasLoaded) {
    for (const OpaqueOperation& row : kOpaqueTavo) {
        hardware.answer(row.name, 0x41);
        EXPECT_EQ(operation<OpaqueTavo>(row.name)(nullptr, 2, 3, 4, 5, 6, 7, 8), row.isPointer ? 0 : -6) << row.name;
    }
    uint64_t value = 3;
    EXPECT_EQ(operation<decltype(TavoRegisterWrite)>("TavoRegisterWrite")(nullptr, 1, 1), -6);
    EXPECT_EQ(operation<decltype(TavoRegisterRead)>("TavoRegisterRead")(nullptr, 1, &value), -6);
    EXPECT_EQ(operation<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(nullptr, 1, 1), nullptr);
    EXPECT_EQ(operation<decltype(TavoDmaStop)>("TavoDmaStop")(nullptr, 0, 0, 0), -6);
    EXPECT_EQ(operation<decltype(TavoGetDmaLength)>("TavoGetDmaLength")(nullptr, memory(), 1), static_cast<size_t>(-6));
    EXPECT_EQ(operation<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong")(nullptr, memory(), 1),
              18446744073709551610U);
    EXPECT_THAT(hardware.takeCalls(), IsEmpty());
}

TEST_F(TrampolineTest, FunctionsThatForwardNothing) {
    uint64_t queues = 0;
    EXPECT_EQ(operation<decltype(TavoFreeHW)>("TavoFreeHW")(device()), 0);
    EXPECT_EQ(operation<decltype(TavoFreeHW)>("TavoFreeHW")(nullptr), 0);
    EXPECT_EQ(operation<decltype(TavoGetNrOfDevices)>("TavoGetNrOfDevices")(), 0);
    EXPECT_EQ(operation<decltype(TavoGetDevicesSpecificIndex)>("TavoGetDevicesSpecificIndex")(3), 0);
    EXPECT_EQ(operation<decltype(TavoInitHWEx)>("TavoInitHWEx")(0, "libQuillon.so"), nullptr);
    EXPECT_EQ(operation<decltype(TavoInitAllHWEx)>("TavoInitAllHWEx")(0), nullptr);
    EXPECT_EQ(operation<decltype(TavoDataQueuePoll)>("TavoDataQueuePoll")(device(), &queues, 1), -6);
    EXPECT_EQ(operation<decltype(TavoDataQueuePoll)>("TavoDataQueuePoll")(nullptr, nullptr, 0), -6);
    EXPECT_THAT(hardware.takeCalls(), IsEmpty());
}

TEST(UnresolvedTrampolineTest, MissingLibrariesAnswerFailures) {
    const Variable directory("TAVODIR5", nullptr);
    const Variable directory32("TAVODIR5_32", nullptr);
    Installation tree;
    const Library applet(tree.addApplet());
    for (const OpaqueOperation& row : kOpaqueTavo) {
        EXPECT_EQ(applet.function<OpaqueTavo>(row.name)(device(), 2, 3, 4, 5, 6, 7, 8), row.isPointer ? 0 : -6)
            << row.name;
    }
    EXPECT_EQ(applet.function<OpaqueHap>("TavoDmaPulseNextBuffer")(1, 2, 3, 4, 5, 6, 7, 8), -6);
    for (const OpaqueOperation& row : kOpaqueHap) {
        const std::string name = row.name;
        if (name == "HapGetParamValue64" || name == "HapGetParamValueDouble") continue;
        EXPECT_EQ(applet.function<OpaqueHap>(row.name)(1, 2, 3, 4, 5, 6, 7, 8), 0) << row.name;
    }
    EXPECT_EQ(applet.function<decltype(HapGetParamValueDouble)>("HapGetParamValueDouble")(1, 2, 3, 4, 5, 6, 7, 8), 0.0);
    EXPECT_EQ(applet.function<decltype(HapLoadHapFileWithType)>("HapLoadHapFileWithType")("a", 1, 1), nullptr);
    EXPECT_EQ(applet.function<decltype(HapGetNrOfRegister)>("HapGetNrOfRegister")(design()), 0);
    EXPECT_EQ(applet.function<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(device(), 1, 1), nullptr);
    EXPECT_EQ(applet.function<decltype(TavoDmaStop)>("TavoDmaStop")(device(), 0, 0, 0), -6);
    EXPECT_EQ(applet.function<decltype(TavoFreeHW)>("TavoFreeHW")(device()), 0);
}

}  // namespace
