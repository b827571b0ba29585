#include <arv.h>
#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "Goals.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
    arv_enable_interface("Fake");
    gst_init(nullptr, nullptr);
    try {
        bench::GoalReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillon_benchmarks: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
