#include "bench/firstwindow.hpp"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <string_view>

// The window is measured without a screen, at two device pixels a point.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 2 && std::string_view(argv[1]) == firstWindowOption) return showFirstWindow(argc, argv);
    qputenv("QT_SCALE_FACTOR", "2");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (!benchmark::ReportUnrecognizedArguments(argc, argv)) benchmark::RunSpecifiedBenchmarks();
}
