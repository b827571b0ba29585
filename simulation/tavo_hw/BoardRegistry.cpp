#include "simulation/tavo_hw/BoardRegistry.h"

#include <algorithm>
#include <array>

#include "simulation/support/LibraryState.h"

namespace simulation {

namespace {

constinit LibraryState<BoardRegistry> gBoards;

/// A plain array: a thread's text needs no clean-up when the thread ends.
constinit thread_local std::array<char, 1024> gLastError{};

[[gnu::destructor]] void releaseBoards() {
    // A transfer that still runs would write into memory that the ending process takes away.
    if (BoardRegistry* const registry = gBoards.peek()) registry->halt();
    gBoards.release();
}

}  // namespace

BoardRegistry& boards() { return gBoards.get(); }

int report(const Outcome& outcome) {
    if (outcome.code != kOk) {
        const size_t length = std::min(outcome.text.size(), gLastError.size() - 1);
        std::copy_n(outcome.text.begin(), length, gLastError.begin());
        gLastError[length] = '\0';
    }
    return outcome.code;
}

const char* lastError() { return gLastError.data(); }

std::shared_ptr<BenchBoard> BoardRegistry::boardOf(int number) {
    for (const auto& board : mBoards) {
        if (board->number == number) return board;
    }
    const auto& board = mBoards.emplace_back(std::make_shared<BenchBoard>(number));
    // A faulty variable is reported when the host configures the board, which reads it again.
    std::ignore = board->applyEnvironment();
    return board;
}

std::shared_ptr<BenchBoard> BoardRegistry::find(const FgDevice* device) {
    const std::lock_guard lock(mMutex);
    for (const auto& board : mBoards) {
        if (static_cast<const void*>(board.get()) == device) return board;
    }
    return boardOf(0);
}

FgDevice* BoardRegistry::open(int number) {
    const std::lock_guard lock(mMutex);
    return reinterpret_cast<FgDevice*>(boardOf(number).get());
}

void BoardRegistry::close(const FgDevice* device) {
    const std::shared_ptr<BenchBoard> closed = find(device);
    closed->board.halt();
    const std::lock_guard lock(mMutex);
    std::erase(mBoards, closed);
}

bool BoardRegistry::isIdle() const {
    const std::lock_guard lock(mMutex);
    return std::all_of(mBoards.begin(), mBoards.end(),
                       [](const auto& bench) { return bench->board.openBufferSets() == 0; });
}

void BoardRegistry::halt() {
    const std::lock_guard lock(mMutex);
    for (const auto& bench : mBoards) bench->board.halt();
}

}  // namespace simulation
