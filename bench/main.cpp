#include <benchmark/benchmark.h>

#include <opencv2/core/utility.hpp>

// One core for everybody: the library has no threads, so its peers get none either.
int main(int argc, char** argv) {
    cv::setNumThreads(1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
