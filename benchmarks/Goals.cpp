#include "Goals.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "FrameBatch.h"

namespace bench {

namespace {

/// A goal: how many times as long as its peer a work may take; below 1, how much shorter it must be.
struct Goal {
    const char* work;
    const char* beside;
    double most;
};

/// Times that are given, not measured.
struct GivenTime {
    const char* name;
    double seconds;
};
constexpr std::array kGivenTimes{
    GivenTime{"a millisecond", 1e-3                          },
    GivenTime{"2000 frames/s", bench::framesOf(1024) / 2000.0},
};

constexpr double kThird = 1.0 / 3;

constexpr std::array kGoals{
    Goal{"readInteger",        "emptyCall",           5.0   },
    Goal{"writeInteger",       "emptyCall",           8.0   },
    Goal{"writeEnumeration",   "emptyCall",           8.0   },
    Goal{"readInteger",        "peerReadInteger",     0.1   },
    Goal{"writeInteger",       "peerWriteInteger",    0.1   },
    Goal{"identifierByName",   "peerReadInteger",     0.1   },
    Goal{"openReadFree",       "peerOpenReadFree",    0.5   },
    Goal{"kneeReload",         "bareKneeWrites",      1.2   },
    Goal{"genApiDocument",     "copyOfDocument",      40.0  },
    Goal{"frames/1024",        "2000 frames/s",       1.0   },
    Goal{"sortedFrames/1024",  "2000 frames/s",       1.0   },
    Goal{"frames/256",         "peerFakeCamera/256",  kThird},
    Goal{"frames/256",         "peerTestSource/256",  kThird},
    Goal{"frames/1024",        "peerFakeCamera/1024", kThird},
    Goal{"frames/1024",        "peerTestSource/1024", kThird},
    Goal{"frames/8192",        "peerFakeCamera/8192", kThird},
    Goal{"frames/8192",        "peerTestSource/8192", kThird},
    Goal{"sortedFrames/1024",  "peerFakeCamera/1024", kThird},
    Goal{"sortedFrames/1024",  "peerTestSource/1024", kThird},
    Goal{"stopDuringWait",     "a millisecond",       1.0   },
    Goal{"freeWhileAcquiring", "a millisecond",       1.0   },
};

/// \return the name of a benchmark with its argument, without what the library adds about the clocks
std::string workOf(const std::string& name) {
    return name.substr(0, std::min({name.find("/process_time"), name.find("/real_time"), name.find("/manual_time")}));
}

}  // namespace

void GoalReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.error_occurred || run.iterations == 0) continue;
        const std::string name = run.benchmark_name();
        const bool isTimedByHand = name.ends_with("/manual_time");
        const double seconds = isTimedByHand ? run.real_accumulated_time : run.cpu_accumulated_time;
        mSeconds[workOf(name)] = seconds / static_cast<double>(run.iterations);
    }
}

void GoalReporter::Finalize() {
    for (const GivenTime& given : kGivenTimes) mSeconds[given.name] = given.seconds;
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
