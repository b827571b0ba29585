// The exported operations of the hardware-access library: a thin layer over Board.
#include "fabrix/tavo_hw.h"

#include <chrono>
#include <string_view>

#include "simulation/design/DesignHandle.h"
#include "simulation/tavo_hw/guarded.h"
#include "simulation/tavo_hw/tavo_sim.h"

namespace {

using namespace simulation;

/// Runs \p work on the board of \p device, unless a fault is planned for this call of \p operation.
template <class Result, class Work>
Result run(std::string_view operation, const FgDevice* device, Work&& work) {
    return onBoard<Result>(device, [&](BenchBoard& bench) -> Result {
        const int code = bench.board.faults().nextCall(operation);
        if (code != kOk) return failureOf<Result>(report({code, std::string(operation) + ": a planned fault"}));
        return work(bench.board);
    });
}

/// The same for an operation on the host's buffer memory; memory that is not of this board is refused.
template <class Result, class Work>
Result runOnBuffers(std::string_view operation, const FgDevice* device, const dma_mem* memory, Work&& work) {
    return run<Result>(operation, device, [&](Board& board) -> Result {
        const auto buffers = board.buffers(memory);
        if (buffers == nullptr) return failureOf<Result>(kBadArgument);
        return work(*buffers);
    });
}

int configure(std::string_view operation, const FgDevice* device, const fpga_design* design) {
    return onBoard<int>(device, [&](BenchBoard& bench) {
        // First of all, so that a fault planned by the environment counts this very call.
        const int environment = report(bench.applyEnvironment());
        if (environment != kOk) return environment;
        return run<int>(operation, device, [&](Board& board) {
            const int code = board.configure(fpga_design::designOf(design));
            return code == kOk ? kOk : report({code, "the design handle is null, damaged or unloaded"});
        });
    });
}

/// Keeps a number within the positive half of an int: negative answers are codes.
int positive(uint64_t number) { return static_cast<int>(number & 0x7FFFFFFF); }

uint64_t asNumber(std::chrono::nanoseconds time) { return static_cast<uint64_t>(time.count()); }

}  // namespace

extern "C" {

int TavoConfigureFpga(FgDevice* device, fpga_design* design) { return configure(__func__, device, design); }

// The software board has no master that a slave would follow: a slave is configured like any board.
int TavoConfigureSlave(FgDevice* device, fpga_design* design) { return configure(__func__, device, design); }

int TavoRegisterWrite(FgDevice* device, int handle, uint64_t value) {
    return run<int>(__func__, device, [&](Board& board) { return board.writeRegister(handle, value); });
}

int TavoRegisterRead(FgDevice* device, int handle, uint64_t* value) {
    return run<int>(__func__, device, [&](Board& board) { return board.readRegister(handle, value); });
}

dma_mem* TavoGetVirtualUserBuffer(FgDevice* device, size_t size, frameindex_t count) {
    return run<dma_mem*>(__func__, device,
                         [&](Board& board) { return reinterpret_cast<dma_mem*>(board.createBuffers(size, count)); });
}

int TavoFreeVirtualUserBuffer(FgDevice* device, dma_mem* memory) {
    return run<int>(__func__, device, [&](Board& board) { return board.freeBuffers(memory); });
}

int TavoAddUserBuffer(FgDevice* device, dma_mem* memory, void* buffer, size_t size, frameindex_t index) {
    return runOnBuffers<int>(__func__, device, memory, [&](BufferSet& buffers) {
        if (buffer == nullptr) return kBadArgument;
        return buffers.add(index, {static_cast<uint8_t*>(buffer), size});
    });
}

int TavoDelUserBuffer(FgDevice* device, dma_mem* memory, frameindex_t index) {
    return runOnBuffers<int>(__func__, device, memory, [&](BufferSet& buffers) { return buffers.remove(index); });
}

intptr_t TavoUnlockBuffer(FgDevice* device, uintptr_t memory, uintptr_t index, uintptr_t, uintptr_t, uintptr_t,
                          uintptr_t, uintptr_t) {
    auto* const handle = reinterpret_cast<dma_mem*>(memory);  // NOLINT(performance-no-int-to-ptr) it was a pointer
    return runOnBuffers<intptr_t>(__func__, device, handle, [&](BufferSet& buffers) {
        return intptr_t{buffers.handBack(static_cast<frameindex_t>(index))};
    });
}

int TavoGetBufferStatus(FgDevice* device, dma_mem* memory, int /*dummy*/, frameindex_t index, fx_buf_status* status) {
    return runOnBuffers<int>(__func__, device, memory, [&](const BufferSet& buffers) {
        if (status == nullptr || index < 0) return kBadArgument;
        const auto record = buffers.inBuffer(index);
        if (!record) return kNoPicture;
        *status = {sizeof(fx_buf_status), record->picture, record->frame, record->length, asNumber(record->stamp)};
        return kOk;
    });
}

int TavoDmaStartRead(FgDevice* device, int port, frameindex_t firstBuffer, size_t length, dma_mem* memory, int mode,
                     frameindex_t transfers, int /*reserved*/, int /*timeout*/) {
    return run<int>(__func__, device, [&](Board& board) {
        return report(board.startDma({port, firstBuffer, length, mode, transfers}, memory));
    });
}

int TavoDmaStartWrite(FgDevice* device, int /*port*/, frameindex_t /*firstBuffer*/, size_t /*length*/,
                      dma_mem* /*memory*/, int /*mode*/, frameindex_t /*transfers*/, int /*reserved*/,
                      int /*timeout*/) {
    return run<int>(__func__, device, [](Board&) {
        return report({kNotSupported, "the board takes no pictures from the host"});
    });
}

int TavoDmaStop(FgDevice* device, int port, int /*reserved1*/, int /*reserved2*/) {
    return run<int>(__func__, device, [&](Board& board) { return board.stopDma(port); });
}

frameindex_t TavoDmaWaitForBuffer(FgDevice* device, int port, frameindex_t picture, dma_mem* memory, int timeout) {
    return runOnBuffers<frameindex_t>(__func__, device, memory, [&](const BufferSet& buffers) {
        return port == 0 ? buffers.wait(picture, timeout) : kBadArgument;
    });
}

frameindex_t TavoDmaTestBuffer(FgDevice* device, int port, dma_mem* memory) {
    return runOnBuffers<frameindex_t>(__func__, device, memory, [&](const BufferSet& buffers) {
        return port == 0 ? buffers.lastPicture() : kBadArgument;
    });
}

int TavoGetDmaTag(FgDevice* device, dma_mem* memory, frameindex_t buffer) {
    return runOnBuffers<int>(__func__, device, memory, [&](const BufferSet& buffers) {
        if (buffer < 0) return kBadArgument;
        const auto record = buffers.inBuffer(buffer);
        return record ? positive(record->tag) : kNoPicture;
    });
}

int TavoGetDmaTimeStamp(FgDevice* device, dma_mem* memory, frameindex_t buffer) {
    return runOnBuffers<int>(__func__, device, memory, [&](const BufferSet& buffers) {
        if (buffer < 0) return kBadArgument;
        const auto record = buffers.inBuffer(buffer);
        return record ? positive(record->timeStamp / 1000) : kNoPicture;
    });
}

uint64_t TavoGetDmaTimeStampLong(FgDevice* device, dma_mem* memory, frameindex_t buffer) {
    return runOnBuffers<uint64_t>(__func__, device, memory, [&](const BufferSet& buffers) {
        const auto record = buffers.inBuffer(buffer);
        return record ? record->timeStamp : uint64_t{0};
    });
}

size_t TavoGetDmaLength(FgDevice* device, dma_mem* memory, frameindex_t picture) {
    return runOnBuffers<size_t>(__func__, device, memory, [&](const BufferSet& buffers) {
        const auto record = buffers.ofPicture(picture);
        return record ? record->length : size_t{0};
    });
}

int TavoDataQueueReadBufferLong(FgDevice* device, int /*queue*/, uint32_t* /*words*/, int /*count*/, int /*timeout*/) {
    return run<int>(__func__, device, [](Board&) { return report({kNotSupported, "the board has no data queues"}); });
}

// A queue that never holds a word is always clear.
int TavoDataQueueClear(FgDevice* device, int /*queue*/) {
    return run<int>(__func__, device, [](Board&) { return kOk; });
}

size_t TavoGetBufferSize(FgDevice* device, dma_mem* memory) {
    return runOnBuffers<size_t>(__func__, device, memory, [](const BufferSet& buffers) { return buffers.totalSize(); });
}

frameindex_t TavoGetNrOfSubbuffer(FgDevice* device, dma_mem* memory) {
    return runOnBuffers<frameindex_t>(__func__, device, memory,
                                      [](const BufferSet& buffers) { return buffers.count(); });
}

int TavoGetCameraStatusExtended(FgDevice* device, unsigned int connector) {
    return run<int>(__func__, device, [&](Board& board) { return board.cameraStatus(connector); });
}
}
