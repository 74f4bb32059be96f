#include "bench/firstwindow.hpp"

#include "app/corvaneapp.hpp"
#include "tests/simulatorprocess.hpp"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QEvent>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

constexpr const char* environment = "/usr/bin/env";
constexpr int megabyte = 1 << 20;
constexpr const char* residentIs = "resident MB: ";

// Ends the program when its window has been painted, and prints the memory that it takes then.
class FirstWindow final : public QObject {
public:
    FirstWindow() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && static_cast<QWidget*>(watched)->isWindow()) {
            qApp->removeEventFilter(this);
            startTimer(0);
        }
        return false;
    }

    void timerEvent(QTimerEvent*) override {
        std::printf("%s%.1f\n", residentIs, residentMegabytes());
        std::fflush(stdout);
        QApplication::quit();
    }

private:
    static double residentMegabytes() {
        std::ifstream pages("/proc/self/statm");
        double all = 0;
        double resident = 0;
        pages >> all >> resident;
        return resident * double(::sysconf(_SC_PAGESIZE)) / megabyte;
    }
};

// Reads the memory that the child prints; the toolkit prints warnings as well.
double residentOf(Tests::Process& child) {
    for (std::string line = child.line(); !line.empty(); line = child.line())
        if (line.starts_with(residentIs)) return std::stod(line.substr(std::string_view(residentIs).size()));
    throw std::runtime_error("no window");
}

// A whole process, from its start to its first window on the screen.
void startToFirstWindow(benchmark::State& state, const char* ratio) {
    const std::string program = QApplication::applicationFilePath().toStdString();
    double megabytes = 0;
    for (auto _ : state) {
        Tests::Process child(
            {environment, std::string("QT_SCALE_FACTOR=") + ratio, program, firstWindowOption});
        megabytes = residentOf(child);
        state.PauseTiming();
        child.end();
        state.ResumeTiming();
    }
    state.counters["MB"] = megabytes;
}

BENCHMARK_CAPTURE(startToFirstWindow, ratio1, "1")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToFirstWindow, ratio2, "2")->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

int showFirstWindow(int argc, char** argv) {
    const QApplication application(argc, argv);
    const FirstWindow watching;
    Corvane::CorvaneApp corvane({});
    corvane.start();
    return QApplication::exec();
}
