#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "fabrix/types.h"
#include "simulation/board/Board.h"
#include "simulation/board/BoardEnvironment.h"

namespace simulation {

/// A board and the environment that sets it up.
struct BenchBoard {
    explicit BenchBoard(int boardNumber) : number(boardNumber) {}

    [[nodiscard]] Outcome applyEnvironment() { return environment.apply(board, number); }

    const int number;
    Board board;
    BoardEnvironment environment;
};

/// All boards of the process, by device handle. Any thread may call it; a board that is closed lives on until the
/// operations in it have ended.
class BoardRegistry {
public:
    /// The board of \p device; board 0 for a handle that is not known. It is made, and set up by the environment, at
    /// its first use.
    [[nodiscard]] std::shared_ptr<BenchBoard> find(const FgDevice* device);

    /// The handle of board \p number.
    [[nodiscard]] FgDevice* open(int number);

    void close(const FgDevice* device);

    /// Whether no board holds anything of a host.
    [[nodiscard]] bool isIdle() const;

    /// Ends all transfers.
    void halt();

private:
    std::shared_ptr<BenchBoard> boardOf(int number);

    mutable std::mutex mMutex;
    std::vector<std::shared_ptr<BenchBoard>> mBoards;  // guarded by mMutex
};

/// The boards of this process.
[[nodiscard]] BoardRegistry& boards();

/// Keeps the reason of a refusal for tavo_sim_last_error in this thread. \return the outcome's code.
int report(const Outcome& outcome);
[[nodiscard]] const char* lastError();

}  // namespace simulation
