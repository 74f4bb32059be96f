#include "bench/modbuspeer.hpp"

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    ModbusPeer::start();  // forks, so before anything that may start a thread
    benchmark::Initialize(&argc, argv);
    if (!benchmark::ReportUnrecognizedArguments(argc, argv)) benchmark::RunSpecifiedBenchmarks();
    ModbusPeer::stop();
}
