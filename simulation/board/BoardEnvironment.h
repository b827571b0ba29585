#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "simulation/board/Board.h"

namespace simulation {

/// The environment variables that set up a board. Each is applied when it is first seen and again when its text has
/// changed, so that what a program set otherwise in between stays.
class BoardEnvironment {
public:
    /// Applies the variables to \p board. On a refusal the outcome's text names the variable.
    [[nodiscard]] Outcome apply(Board& board, int boardNumber);

private:
    std::mutex mMutex;
    std::map<std::string_view, std::string> mApplied;  // guarded by mMutex
};

}  // namespace simulation
