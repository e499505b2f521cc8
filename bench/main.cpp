// Measures every conversion, predicate and look-up beside its literal counterpart. Takes the options of the benchmark
// library. scripts/bench.sh runs it and makes a report from its output.
#include <exception>
#include <iostream>

#include "measurement.h"
#include "surroundings.h"

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const NS_BENCH::Corpus corpus;
    const NS_BENCH::Surroundings surroundings(corpus);
    NS_BENCH::AddConversions(corpus);
    NS_BENCH::AddLookUps(corpus);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& error) {
    std::cerr << "kx_bench: " << error.what() << '\n';
    return 1;
}
