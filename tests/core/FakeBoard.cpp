#include "tests/core/FakeBoard.h"

#include <algorithm>

#include "haprt/src/haprt_loader.h"
#include "tavo_hal/src/hw/tavo_hw_loader.h"

FakeBoard* FakeBoard::current = nullptr;

namespace {

constexpr int kBadHandle = -20;

FakeBoard& board() { return *FakeBoard::current; }

void note(std::string event) { board().events.push_back(std::move(event)); }

/// Notes an event. \return \p result
template <class Result>
Result answer(std::string event, Result result) {
    note(std::move(event));
    return result;
}

template <class... Numbers>
std::string line(const char* format, Numbers... numbers) {
    char text[256];
    std::snprintf(text, sizeof text, format, numbers...);
    return text;
}

int registerHandle(const std::string& name) {
    const std::vector<FakeBoard::Register>& all = board().registers;
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& reg) { return reg.name == name; });
    return found == all.end() ? 0 : static_cast<int>(found - all.begin()) + 1;
}

int registerWrite(FgDevice*, int handle, uint64_t value) {
    FakeBoard::Register* found = board().find(handle);
    const std::string name = found == nullptr ? line("<%d>", handle) : found->name;
    note("write " + name + " " + std::to_string(value));
    if (board().failingWriteCountdown > 0 && --board().failingWriteCountdown == 0) return board().failingWriteCode;
    if (found == nullptr || found->direction != 1) return kBadHandle;
    if (const int failure = board().failures["write " + name]; failure != 0) return failure;
    found->value = value;
    return 0;
}

int registerRead(FgDevice*, int handle, uint64_t* value) {
    const FakeBoard::Register* found = board().find(handle);
    if (found == nullptr) return kBadHandle;
    note("read " + found->name);
    if (const int failure = board().failures["read " + found->name]; failure != 0) return failure;
    *value = found->value;
    return 0;
}

void installBoard() {
    m_PTavoRegisterWrite = &registerWrite;
    m_PTavoRegisterRead = &registerRead;
    m_PTavoConfigureFpga = [](FgDevice*, fpga_design*) { return answer("configure", 0); };
    m_PTavoGetCameraStatusExtended = [](FgDevice*, unsigned connector) {
        return answer(line("status %u", connector), board().cameraStatus[connector]);
    };
    m_PTavoDmaStartRead = [](FgDevice*, int path, frameindex_t first, size_t length, dma_mem*, int mode,
                             frameindex_t count, int reserved, int timeout) {
        const bool isPlain = first == 0 && length == 0 && reserved == 0;
        note(line("start path=%d mode=%d count=%d timeout=%d%s", path, mode, count, timeout, isPlain ? "" : " odd"));
        return board().startResult;
    };
    m_PTavoDmaStop = [](FgDevice*, int path, int, int) {
        return answer(line("stop path=%d", path), board().stopResult);
    };
    m_PTavoDmaTestBuffer = [](FgDevice*, int path, dma_mem*) -> frameindex_t {
        return answer(line("test path=%d", path), board().testResult);
    };
    m_PTavoDmaWaitForBuffer = [](FgDevice*, int path, frameindex_t picture, dma_mem*, int timeout) -> frameindex_t {
        return answer(line("wait path=%d picture=%d timeout=%d", path, picture, timeout), board().waitResult);
    };
    m_PTavoGetDmaTag = [](FgDevice*, dma_mem*, frameindex_t buffer) -> int {
        return answer(line("tag %d", buffer), 1000 + buffer);
    };
    m_PTavoGetDmaLength = [](FgDevice*, dma_mem*, frameindex_t picture) {
        return answer(line("length %d", picture), static_cast<size_t>(picture) * 100);
    };
}

void installDesign() {
    m_PHapLoadHapFileWithType = [](const char*, int, int) -> fpga_design* { return nullptr; };
    m_PHapLoadDesignFromBuffer = [](const void* data, size_t length, int flag) {
        return answer(line("load embedded size=%zu flag=%d%s", length, flag, data == nullptr ? " null" : ""),
                      FakeBoard::design());
    };
    m_PHapUnloadHapFile = [](fpga_design*) { return answer("unload", 0); };
    m_PHapGetRegisterByName = [](fpga_design*, const char* name) { return registerHandle(name); };
    m_PHapGetRegisterBitRange = [](fpga_design*, int handle) {
        const FakeBoard::Register* found = board().find(handle);
        return found == nullptr ? 0 : found->width;
    };
    m_PHapGetRegisterName = [](fpga_design*, int handle) {
        const FakeBoard::Register* found = board().find(handle);
        return found == nullptr ? nullptr : found->name.c_str();
    };
    m_PHapGetRegisterDirection = [](fpga_design*, int handle) {
        const FakeBoard::Register* found = board().find(handle);
        return found == nullptr ? 0 : found->direction;
    };
    m_PHapGetNrOfRegister = [](fpga_design*) { return static_cast<int>(board().registers.size()); };
    m_PHapGetUserInfoByName = [](fpga_design*, const char* name) {
        return std::string(name) == "DESIGN_NAME" ? "FakeDesign" : nullptr;
    };
}

}  // namespace

FakeBoard::FakeBoard() {
    for (const DesignRegister& row : designRegisters()) registers.push_back({row.name, row.width, row.direction});
    current = this;
    installBoard();
    installDesign();
}

FakeBoard::~FakeBoard() {
#define FABRIX_TAVO(result, name, parameters, arguments) m_P##name = nullptr;
#define FABRIX_HAP(result, name, parameters, arguments) m_P##name = nullptr;
#include "fabrix/runtime_operations.inc"
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
    if (Register* const found = find(registerHandle(name)); found != nullptr) found->width = width;
}

void FakeBoard::failNthWrite(int n, int code) {
    failingWriteCountdown = n;
    failingWriteCode = code;
}

uint64_t FakeBoard::value(const std::string& name) const {
    const Register* const found = current->find(registerHandle(name));
    return found == nullptr ? ~uint64_t{0} : found->value;
}

void FakeBoard::setValue(const std::string& name, uint64_t value) {
    if (Register* const found = find(registerHandle(name)); found != nullptr) found->value = value;
}

std::vector<std::string> FakeBoard::eventsOf(const std::string& prefix) const {
    std::vector<std::string> found;
    for (const std::string& event : events) {
        if (event.starts_with(prefix)) found.push_back(event.substr(prefix.size()));
    }
    return found;
}
