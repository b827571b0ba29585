#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace bench {

/// Prints the measured times as usual, and at the end each work beside what it is compared with.
class GoalReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::map<std::string, double> mSeconds;  // of the processor for one iteration, by name
};

}  // namespace bench
