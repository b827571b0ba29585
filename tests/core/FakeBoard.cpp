#include "tests/core/FakeBoard.h"

#include <algorithm>

#include "haprt/src/haprt_loader.h"
#include "tavo_hal/src/hw/tavo_hw_loader.h"

FakeBoard* FakeBoard::current = nullptr;

namespace {

constexpr int kBadHandle = -20;

FakeBoard& board() { return *FakeBoard::current; }

void note(std::string event) { board().events.push_back(std::move(event)); }

template <class... Numbers>
std::string line(const char* format, Numbers... numbers) {
    char text[256];
    std::snprintf(text, sizeof text, format, numbers...);
    return text;
}

int registerWrite(FgDevice*, int handle, uint64_t value) {
    FakeBoard::Register* found = board().find(handle);
    const std::string name = found == nullptr ? line("<%d>", handle) : found->name;
    note("write " + name + " " + std::to_string(value));
    if (board().failingWriteCountdown > 0 && --board().failingWriteCountdown == 0) return board().failingWriteCode;
    if (found == nullptr || found->direction != 1) return kBadHandle;
    if (const auto failure = board().writeFailures.find(name); failure != board().writeFailures.end()) {
        if (failure->second != 0) return failure->second;
    }
    found->value = value;
    if (board().onWrite) board().onWrite(name, value);
    return 0;
}

int registerRead(FgDevice*, int handle, uint64_t* value) {
    const FakeBoard::Register* found = board().find(handle);
    if (found == nullptr) return kBadHandle;
    note("read " + found->name);
    if (const auto failure = board().readFailures.find(found->name); failure != board().readFailures.end()) {
        return failure->second;
    }
    *value = found->value;
    return 0;
}

int configure(FgDevice*, fpga_design*) {
    note("configure");
    return board().configureResult;
}

int configureSlave(FgDevice*, fpga_design*) {
    note("configure slave");
    return board().configureResult;
}

int cameraStatusExtended(FgDevice*, unsigned connector) {
    note(line("status %u", connector));
    return board().cameraStatus[connector];
}

int startRead(FgDevice*, int path, frameindex_t first, size_t length, dma_mem*, int mode, frameindex_t count,
              int reserved, int timeout) {
    const bool isPlain = first == 0 && length == 0 && reserved == 0;
    note(line("start path=%d mode=%d count=%d timeout=%d%s", path, mode, count, timeout, isPlain ? "" : " odd"));
    return board().startResult;
}

int stop(FgDevice*, int path, int, int) {
    note(line("stop path=%d", path));
    return board().stopResult;
}

frameindex_t testBuffer(FgDevice*, int path, dma_mem*) {
    note(line("test path=%d", path));
    return board().testResult;
}

frameindex_t waitForBuffer(FgDevice*, int path, frameindex_t picture, dma_mem*, int timeout) {
    note(line("wait path=%d picture=%d timeout=%d", path, picture, timeout));
    return board().waitResult;
}

int dmaTag(FgDevice*, dma_mem*, frameindex_t buffer) {
    note(line("tag %d", buffer));
    return 1000 + buffer;
}

size_t dmaLength(FgDevice*, dma_mem*, frameindex_t picture) {
    note(line("length %d", picture));
    return static_cast<size_t>(picture) * 100;
}

fpga_design* loadFile(const char* name, int boardType, int flag) {
    note("load " + std::string(name) + line(" type=%d flag=%d", boardType, flag));
    return board().externalDesign;
}

fpga_design* loadBuffer(const void* data, size_t length, int flag) {
    note(line("load embedded size=%zu flag=%d%s", length, flag, data == nullptr ? " null" : ""));
    return board().embeddedDesign;
}

int unload(fpga_design*) {
    note("unload");
    return 0;
}

int registerByName(fpga_design*, const char* name) {
    const std::vector<FakeBoard::Register>& all = board().registers;
    const auto found = std::find_if(all.begin(), all.end(), [name](const auto& reg) { return reg.name == name; });
    return found == all.end() ? 0 : static_cast<int>(found - all.begin()) + 1;
}

int bitRange(fpga_design*, int handle) {
    const FakeBoard::Register* found = board().find(handle);
    return found == nullptr ? 0 : found->width;
}

const char* registerName(fpga_design*, int handle) {
    const FakeBoard::Register* found = board().find(handle);
    return found == nullptr ? nullptr : found->name.c_str();
}

int direction(fpga_design*, int handle) {
    const FakeBoard::Register* found = board().find(handle);
    return found == nullptr ? 0 : found->direction;
}

int registerCount(fpga_design*) { return static_cast<int>(board().registers.size()); }

const char* userInfo(fpga_design*, const char* name) {
    return std::string(name) == "DESIGN_NAME" ? "FakeDesign" : nullptr;
}

void installTavo(bool on) {
    m_PTavoConfigureFpga = on ? &configure : nullptr;
    m_PTavoConfigureSlave = on ? &configureSlave : nullptr;
    m_PTavoRegisterWrite = on ? &registerWrite : nullptr;
    m_PTavoDmaStartRead = on ? &startRead : nullptr;
    m_PTavoDmaStop = on ? &stop : nullptr;
    m_PTavoDmaTestBuffer = on ? &testBuffer : nullptr;
    m_PTavoDmaWaitForBuffer = on ? &waitForBuffer : nullptr;
    m_PTavoGetDmaTag = on ? &dmaTag : nullptr;
    m_PTavoGetDmaLength = on ? &dmaLength : nullptr;
    m_PTavoGetCameraStatusExtended = on ? &cameraStatusExtended : nullptr;
    m_PTavoRegisterRead = on ? &registerRead : nullptr;
}

void installHap(bool on) {
    m_PHapLoadDesignFromBuffer = on ? &loadBuffer : nullptr;
    m_PHapUnloadHapFile = on ? &unload : nullptr;
    m_PHapGetRegisterByName = on ? &registerByName : nullptr;
    m_PHapGetRegisterBitRange = on ? &bitRange : nullptr;
    m_PHapGetRegisterName = on ? &registerName : nullptr;
    m_PHapGetRegisterDirection = on ? &direction : nullptr;
    m_PHapGetNrOfRegister = on ? &registerCount : nullptr;
    m_PHapGetUserInfoByName = on ? &userInfo : nullptr;
    m_PHapLoadHapFileWithType = on ? &loadFile : nullptr;
}

}  // namespace

FakeBoard::FakeBoard() {
    for (const DesignRegister& row : designRegisters()) registers.push_back({row.name, row.width, row.direction});
    current = this;
    installTavo(true);
    installHap(true);
}

FakeBoard::~FakeBoard() {
    installTavo(false);
    installHap(false);
    current = nullptr;
}

FgDevice* FakeBoard::device() {
    static int token;
    return reinterpret_cast<FgDevice*>(&token);
}

fpga_design* FakeBoard::design() {
    static int token;
    return reinterpret_cast<fpga_design*>(&token);
}

dma_mem* FakeBoard::memory() {
    static int token;
    return reinterpret_cast<dma_mem*>(&token);
}

FakeBoard::Register* FakeBoard::find(int handle) {
    if (handle < 1 || handle > static_cast<int>(registers.size())) return nullptr;
    return &registers[static_cast<size_t>(handle - 1)];
}

void FakeBoard::removeRegister(const std::string& name) {
    std::erase_if(registers, [&](const Register& reg) { return reg.name == name; });
}

void FakeBoard::setWidth(const std::string& name, int width) {
    for (Register& reg : registers) {
        if (reg.name == name) reg.width = width;
    }
}

void FakeBoard::failNthWrite(int n, int code) {
    failingWriteCountdown = n;
    failingWriteCode = code;
}

uint64_t FakeBoard::value(const std::string& name) const {
    for (const Register& reg : registers) {
        if (reg.name == name) return reg.value;
    }
    return ~uint64_t{0};
}

void FakeBoard::setValue(const std::string& name, uint64_t value) {
    for (Register& reg : registers) {
        if (reg.name == name) reg.value = value;
    }
}

std::vector<std::string> FakeBoard::eventsOf(const std::string& prefix) const {
    std::vector<std::string> found;
    for (const std::string& event : events) {
        if (event.starts_with(prefix)) found.push_back(event.substr(prefix.size()));
    }
    return found;
}
