// Every operation of both runtime libraries through the applet's exported function of the same name.
#include <optional>
#include <tuple>
#include <type_traits>

#include "tests/applet/AppletLibrary.h"

namespace {

/// Calls \p visit with a null of its type and the name of each operation, hardware operations first.
template <class Visit>
void forEachOperation(Visit visit) {
#define FABRIX_TAVO(result, name, parameters, arguments) visit(static_cast<decltype(::name)*>(nullptr), #name);
#define FABRIX_TAVO_OPAQUE(result, name) visit(static_cast<decltype(::name)*>(nullptr), #name);
#define FABRIX_TAVO_NO_DEVICE(result, name) visit(static_cast<decltype(::name)*>(nullptr), #name);
#define FABRIX_HAP(result, name, parameters, arguments) visit(static_cast<decltype(::name)*>(nullptr), #name);
#define FABRIX_HAP_OPAQUE(result, name) visit(static_cast<decltype(::name)*>(nullptr), #name);
#include "fabrix/runtime_operations.inc"
}

/// \return \p number as an argument of a call; \p note gets what the stubs note of it, and the number grows
template <class Argument>
Argument argumentOf(uintptr_t& number, std::string& note) {
    const uintptr_t own = number++;
    if constexpr (std::is_same_v<Argument, const char*>) {
        note += " words";
        return "words";
    } else if constexpr (std::is_pointer_v<Argument>) {
        note += " 0x" + std::to_string(own);
        return reinterpret_cast<Argument>(own);
    } else {
        note += " " + std::to_string(own);
        return static_cast<Argument>(own);
    }
}

/// \return \p number as an answer: null instead of a negative one where the answer is a pointer
template <class Result>
Result answerOf(int number) {
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(static_cast<uintptr_t>(number < 0 ? 0 : number));
    } else {
        return static_cast<Result>(number);
    }
}

bool isHardware(const std::string& name) { return name.starts_with("Tavo"); }

/// The applet, and stubs of both runtime libraries unless there are none.
class Trampolines {
public:
    explicit Trampolines(const std::string& stub = "") {
        if (stub.empty()) return;
        mHardware.emplace(mTree.addStub(stub, "tavo_hw"));
        mRuntime.emplace(mTree.addStub(stub, "haprt"));
    }

    template <class Function>
    Function* function(const char* name) const {
        return mApplet.function<Function>(name);
    }
    /// Calls \p name with the numbers from \p first on. \return whether the call arrived, argument by argument, and
    ///         the stub's answer came back; the test fails where neither this happened nor a refusal
    template <class Result, class... Arguments>
    bool arrives(const std::string& name, Result (*)(Arguments...), uintptr_t first) const {
        const std::optional<Stub>& stub = isHardware(name) ? mHardware : mRuntime;
        if (stub) stub->answer(name.c_str(), 0x41);
        std::string note = name;
        const std::tuple<Arguments...> arguments{argumentOf<Arguments>(first, note)...};
        const Result answer = std::apply(function<Result(Arguments...)>(name.c_str()), arguments);
        const std::vector<std::string> calls = stub ? stub->takeCalls() : std::vector<std::string>();
        if (calls.empty()) {
            EXPECT_EQ(answer, answerOf<Result>(isHardware(name) ? -6 : 0)) << name;
            return false;
        }
        if (name == "TavoGetBufferStatus") note = name + " 0x1 0x2 0 4 0x5";  // passes 0 for its third argument
        EXPECT_EQ(calls, std::vector{note});
        // The stub knows the registers of the design itself.
        const int own = name == "HapGetRegisterByName" ? 0 : name == "HapGetRegisterBitRange" ? 16 : 0x41;
        EXPECT_EQ(answer, answerOf<Result>(own)) << name;
        return true;
    }

private:
    const Variable mDirectory{"TAVODIR5", nullptr};
    const Variable mDirectory32{"TAVODIR5_32", nullptr};
    Installation mTree;
    const Library mApplet{mTree.addApplet()};
    std::optional<Stub> mHardware;
    std::optional<Stub> mRuntime;
};

TEST(TrampolineTest, OperationsThatAreThereArriveAndTheOthersAnswerFailures) {
    const struct {
        const char* stub;
        std::vector<std::string> lacking;
    } rows[]{
        {"stub",                {}                                            },
        {"stub_without_others", {"TavoDmaStop", "HapUnloadHapFile"}           },
        {"stub_without_first",  {"TavoRegisterRead", "HapLoadHapFileWithType"}},
    };
    for (const auto& [stub, lacking] : rows) {
        SCOPED_TRACE(stub);
        const Trampolines trampolines(stub);
        for (int round = 0; round < 2; ++round) {
            std::vector<std::string> missing;
            forEachOperation([&](auto* type, const char* name) {
                if (!trampolines.arrives(name, type, 1)) missing.emplace_back(name);
            });
            EXPECT_EQ(missing, lacking);
        }
        EXPECT_EQ(trampolines.function<decltype(SHW_OpenLib)>("SHW_OpenLib")(), 0);
        EXPECT_EQ(trampolines.function<decltype(HAPRT_OpenLib)>("HAPRT_OpenLib")(), 0);
    }
}

TEST(TrampolineTest, ANullDeviceIsRefusedAndMissingLibrariesAnswerFailures) {
    const Trampolines trampolines("stub");
    const Trampolines unresolved;
    forEachOperation([&](auto* type, const std::string& name) {
        EXPECT_FALSE(unresolved.arrives(name, type, 1)) << name;
        const bool takesDevice = isHardware(name) && name != "TavoDmaPulseNextBuffer";
        EXPECT_EQ(trampolines.arrives(name, type, takesDevice ? 0 : 1), !takesDevice) << name;
    });
}

TEST(TrampolineTest, FunctionsThatForwardNothing) {
    const Trampolines trampolines("stub");
    EXPECT_EQ(trampolines.function<decltype(TavoFreeHW)>("TavoFreeHW")(device()), 0);
    EXPECT_EQ(trampolines.function<decltype(TavoGetNrOfDevices)>("TavoGetNrOfDevices")(), 0);
    EXPECT_EQ(trampolines.function<decltype(TavoGetDevicesSpecificIndex)>("TavoGetDevicesSpecificIndex")(3), 0);
    EXPECT_EQ(trampolines.function<decltype(TavoInitHWEx)>("TavoInitHWEx")(0, "libQuillon.so"), nullptr);
    EXPECT_EQ(trampolines.function<decltype(TavoInitAllHWEx)>("TavoInitAllHWEx")(0), nullptr);
    EXPECT_EQ(trampolines.function<decltype(TavoDataQueuePoll)>("TavoDataQueuePoll")(device(), nullptr, 1), -6);
}

}  // namespace
