#include "Goals.h"

#include <array>
#include <cstdio>

namespace bench {

namespace {

/// A goal: how many times as long as its peer a work may take; below 1, how much shorter it must be.
struct Goal {
    const char* work;
    const char* beside;
    double most;
};

constexpr std::array kGoals{
    Goal{"readInteger",      "emptyCall",        5.0 },
    Goal{"writeInteger",     "emptyCall",        8.0 },
    Goal{"writeEnumeration", "emptyCall",        8.0 },
    Goal{"readInteger",      "peerReadInteger",  0.1 },
    Goal{"writeInteger",     "peerWriteInteger", 0.1 },
    Goal{"identifierByName", "peerReadInteger",  0.1 },
    Goal{"openReadFree",     "peerOpenReadFree", 0.5 },
    Goal{"kneeReload",       "bareKneeWrites",   1.2 },
    Goal{"genApiDocument",   "copyOfDocument",   40.0},
};

}  // namespace

void GoalReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.error_occurred || run.iterations == 0) continue;
        mSeconds[run.benchmark_name()] = run.cpu_accumulated_time / static_cast<double>(run.iterations);
    }
}

void GoalReporter::Finalize() {
    std::printf("\n%-20s %-20s %10s %10s\n", "work", "beside", "ratio", "at most");
    for (const Goal& goal : kGoals) {
        const auto work = mSeconds.find(goal.work);
        const auto beside = mSeconds.find(goal.beside);
        if (work == mSeconds.end() || beside == mSeconds.end()) continue;
        const double ratio = work->second / beside->second;
        std::printf("%-20s %-20s %10.3g %10.3g%s\n", goal.work, goal.beside, ratio, goal.most,
                    ratio > goal.most ? "  missed" : "");
    }
    ConsoleReporter::Finalize();
}

}  // namespace bench
