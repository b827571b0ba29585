// Any sequence of exported calls: any function, port, identifier, type tag and value. What an input means is read from
// its bytes in order; after the last byte everything is 0.
//
// A grabber stays open for many inputs, as opening takes longer than all calls of one. What it has been through stands
// in the file that QUILLON_FUZZ_HISTORY names, as one input: a finding that its own input does not repeat is repeated
// by that file.
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "StandardApplets/grabber_basis/TextFile.h"
#include "fabrix/applet.h"
#include "fuzz/Scratch.h"
#include "tests/faults/FaultyRuntime.h"

namespace {

constexpr int kInputsPerGrabber = 1024;
constexpr int kCallsPerSlowCall = 256;
constexpr int kSlowCallsAtOnce = 8;
constexpr size_t kValueBytes = 2048;  // more than any read writes
constexpr std::array kPorts{0, 1, -1, 2, 2147483647, 0, 0, 1};

class Bytes {
public:
    Bytes() = default;
    Bytes(const uint8_t* data, size_t size) : mNext(data), mLeft(size) {}
    [[nodiscard]] bool isEmpty() const { return mLeft == 0; }
    /// Zeros that have been taken after the last byte.
    [[nodiscard]] size_t zerosTaken() const { return mZerosTaken; }
    template <class Number>
    Number take() {
        Number number{};
        const size_t count = std::min(sizeof number, mLeft);
        if (count > 0) std::memcpy(&number, mNext, count);
        mNext += count;
        mLeft -= count;
        mZerosTaken += sizeof number - count;
        return number;
    }

private:
    const uint8_t* mNext = nullptr;
    size_t mLeft = 0;
    size_t mZerosTaken = 0;
};

/// The inputs of one grabber, one after another as a single input.
class History {
public:
    void restart() {
        const char* const path = std::getenv("QUILLON_FUZZ_HISTORY");
        mFile.reset(path == nullptr ? nullptr : std::fopen(path, "wb"));
        expect(path == nullptr || mFile != nullptr, "the history can be written");
    }
    void add(const uint8_t* data, size_t size) {
        if (mFile == nullptr) return;
        std::fwrite(data, 1, size, mFile.get());
        std::fflush(mFile.get());
    }

private:
    UniqueFile mFile;
};

class Host {
public:
    Host() { open(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() { Fg_FreeGrabber(&mGrabber); }

    /// Makes the calls of one input.
    void run(const uint8_t* data, size_t size) {
        if (++mInputs % kInputsPerGrabber == 0) {
            Fg_FreeGrabber(&mGrabber);
            open();
        }
        mHistory.add(data, size);
        mBytes = Bytes(data, size);
        while (!mBytes.isEmpty()) call();
        const std::string zeros(mBytes.zerosTaken(), '\0');
        mHistory.add(reinterpret_cast<const uint8_t*>(zeros.data()), zeros.size());
    }

private:
    using Call = void (Host::*)();

    void open() {
        int err = -1;
        mGrabber.Master = Std_entry(FaultyRuntime::device(), &err, 0);
        expect(err == 0 && mGrabber.Master != nullptr, "the grabber opens");
        mCallsForSlowOnes = kSlowCallsAtOnce * kCallsPerSlowCall;
        std::remove("calls.mcf");
        mHistory.restart();
    }
    int port() { return kPorts[mBytes.take<uint8_t>() % kPorts.size()]; }
    /// A known parameter, or, one time in eight, any number; the selectors of reads in the two top bits.
    int id() {
        const auto choice = mBytes.take<uint8_t>();
        if (choice % 8 == 7) return mBytes.take<int>();
        const int index = mBytes.take<uint8_t>() % Fg_getNrOfParameter(&mGrabber);
        const unsigned selector = choice % 8 == 6 ? static_cast<unsigned>(choice >> 6) << 30 : 0;
        return static_cast<int>(static_cast<unsigned>(Fg_getParameterId(&mGrabber, index)) | selector);
    }
    FgParamTypes tag() {
        const auto choice = mBytes.take<uint8_t>();
        return choice < 128 ? FG_PARAM_TYPE_AUTO : static_cast<FgParamTypes>(choice - 128);
    }
    /// Memory for a value, with eight fuzzed bytes as a number, or a text of 16.
    void* value(int parameter) {
        mValue.fill('\0');
        if ((static_cast<unsigned>(parameter) & FG_PARAMETER_ID_MASK) == static_cast<unsigned>(FG_KNEE_LUT)) {
            mCurve.fill(mBytes.take<double>());
            const KneeLookupTable_s table{mCurve.data(),
                                          nullptr,
                                          mBytes.take<uint8_t>() % 4u,
                                          mBytes.take<uint8_t>() % 8u == 0 ? 1024u : 1025u,
                                          mBytes.take<uint32_t>(),
                                          mBytes.take<uint8_t>()};
            std::memcpy(mValue.data(), &table, sizeof table);
            return mValue.data();
        }
        for (size_t i = 0; i < 16; i += 8) {
            const auto word = mBytes.take<std::array<char, 8>>();
            std::copy(word.begin(), word.end(), mValue.begin() + static_cast<long>(i));
            if (parameter % 2 == 0) break;
        }
        std::replace(mValue.begin(), mValue.end(), '/', '_');
        return mValue.data();
    }
    dma_mem* memory() { return mBytes.take<uint8_t>() % 8 == 0 ? nullptr : FaultyRuntime::memory(); }

    void write() {
        const int parameter = id();
        Fg_setParameterWithType(&mGrabber, parameter, mBytes.take<uint8_t>() == 255 ? nullptr : value(parameter),
                                port(), tag());
    }
    void read() {
        const int parameter = id();
        Fg_getParameterWithType(&mGrabber, parameter, mBytes.take<uint8_t>() == 255 ? nullptr : value(parameter),
                                port(), tag());
    }
    void names() {
        const auto index = mBytes.take<int>();
        if (const char* name = Fg_getParameterName(&mGrabber, index); name != nullptr) {
            expect(Fg_getParameterIdByName(&mGrabber, name) == Fg_getParameterId(&mGrabber, index),
                   "a name finds its parameter");
        }
        Fg_getParameterIdByName(&mGrabber, static_cast<char*>(value(1)));
    }
    void document() {
        size_t size = mBytes.take<uint8_t>() % 2 == 0 ? mBytes.take<uint16_t>() : 400000;
        std::string buffer(size, '\0');
        Fg_getParameterInfoXML(&mGrabber, port(), mBytes.take<uint8_t>() % 4 == 0 ? nullptr : buffer.data(), &size);
    }
    void tree() { Fg_getParameterInfo(&mGrabber, port()); }
    void start() {
        const int path = port();
        const auto pictures = mBytes.take<frameindex_t>();
        Fg_AcquireEx(&mGrabber, path, pictures, mBytes.take<uint8_t>() % 4, memory());
    }
    void stop() { Fg_stopAcquireEx(&mGrabber, port(), memory(), mBytes.take<int>()); }
    void status() { Fg_getStatusEx(&mGrabber, mBytes.take<uint8_t>(), mBytes.take<frameindex_t>(), port(), memory()); }
    void pictures() {
        Fg_getLastPicNumberEx(&mGrabber, port(), memory());
        // The runtime's wait with a time-out would last until a stop.
        Fg_getLastPicNumberBlockingEx(&mGrabber, mBytes.take<frameindex_t>(), port(), 0, memory());
    }
    void save() { Fg_saveConfig(&mGrabber, "calls.mcf"); }
    /// Loads what a save left, or up to four values of a file, which no limit holds back.
    void load() {
        const auto values = mBytes.take<uint8_t>() % 5;
        std::string lines =
            "[Kamerasektion]\nHersteller='Generic-CameraLink';\nTyp='Quillon8';\nAktivePort=" + std::to_string(port()) +
            ";\n[Port A]\n";
        for (int i = 0; i < values; ++i) {
            const char* const name = Fg_getParameterName(&mGrabber, mBytes.take<uint8_t>());
            const auto value = mBytes.take<uint8_t>() % 2 == 0 ? std::to_string(mBytes.take<int>())
                                                               : std::to_string(mBytes.take<double>());
            if (name != nullptr) lines += std::string(name) + "=" + value + ";\n";
        }
        if (values > 0) Scratch::write("calls.mcf", reinterpret_cast<const uint8_t*>(lines.data()), lines.size());
        Fg_loadConfig(&mGrabber, "calls.mcf");
    }
    void info() {
        int answer = 0;
        std::array<const void*, 1> text{};
        std::array<uintptr_t, 2> target{};
        const auto question = static_cast<AppletInfos>(mBytes.take<uint16_t>());
        answer = Info(question, mBytes.take<int>(), mBytes.take<int>(), target.data(), text.data());
        static_cast<void>(answer);
    }
    void shading() {
        ShadingMaster* const shading = Fg_AllocShading(&mGrabber, mBytes.take<int>(), port());
        Fg_FreeShading(&mGrabber, shading);
    }
    void error() {
        Fg_getLastErrorNumber(&mGrabber);
        expect(Fg_getAppletId(&mGrabber, nullptr) == 172032096, "the applet identifier");
    }

    void call() {
        constexpr std::array<Call, 10> kCalls{&Host::write, &Host::read, &Host::write, &Host::read,     &Host::names,
                                              &Host::start, &Host::stop, &Host::info,  &Host::pictures, &Host::status};
        constexpr std::array<Call, 5> kSlowCalls{&Host::tree, &Host::document, &Host::save, &Host::load,
                                                 &Host::shading};
        constexpr uint8_t kFirstSlow = 200;
        const auto choice = mBytes.take<uint8_t>();
        if (choice < kFirstSlow) {
            (this->*kCalls[choice % kCalls.size()])();
        } else if (mBytes.take<uint8_t>() == choice / 2 && takeSlowCall()) {
            (this->*kSlowCalls[choice % kSlowCalls.size()])();
        } else {
            error();
        }
        mCallsForSlowOnes = std::min(mCallsForSlowOnes + 1, kSlowCallsAtOnce * kCallsPerSlowCall);
    }
    /// Slow calls take as long as hundreds of the others and are found by inputs sooner than those: they have to wait
    /// until as many others have been made.
    bool takeSlowCall() {
        if (mCallsForSlowOnes < kCallsPerSlowCall) return false;
        mCallsForSlowOnes -= kCallsPerSlowCall;
        return true;
    }

    Bytes mBytes;
    Fg_Struct mGrabber{};
    History mHistory;
    int mInputs = 0;
    int mCallsForSlowOnes = 0;
    alignas(double) std::array<char, kValueBytes> mValue{};
    std::array<double, 1025> mCurve{};
};

}  // namespace

/// The applet gives hardware time here; the runtime of this target needs none, and nine tenths of a run would pass so.
extern "C" int usleep(useconds_t /*time*/) { return 0; }
extern "C" int nanosleep(const timespec* /*time*/, timespec* /*left*/) { return 0; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FaultyRuntime runtime;
    static Host host;
    host.run(data, size);
    expect(runtime.designsOpen() == 1, "every other design is unloaded");
    return 0;
}
