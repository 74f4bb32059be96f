#include "bench/measuring.hpp"

#include "bench/openwindow.hpp"

#include <QApplication>
#include <QEvent>
#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

#include <ctime>
#include <unistd.h>

namespace Bench {

using namespace std::chrono_literals;

namespace {

constexpr auto observed = 3s;

double seconds(clockid_t clock) {
    std::timespec time{};
    ::clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

class PaintEvents final : public QObject {
public:
    PaintEvents() { qApp->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        count += event->type() == QEvent::Paint && watched->isWidgetType() ? 1 : 0;
        return false;
    }
};

}  // namespace

void print(const std::string& name, double value) {
    std::printf("%s %.2f\n", name.c_str(), value);
    std::fflush(stdout);
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

double cpuSeconds() { return seconds(CLOCK_PROCESS_CPUTIME_ID); }

double residentMegabytes() {
    constexpr int megabyte = 1 << 20;
    std::ifstream pages("/proc/self/statm");
    double all = 0;
    double resident = 0;
    pages >> all >> resident;
    return resident * double(::sysconf(_SC_PAGESIZE)) / megabyte;
}

double cpuMilliseconds(const std::function<void()>& action) {
    const double before = cpuSeconds();
    action();
    return 1000 * (cpuSeconds() - before);
}

double coreShare() {
    std::vector<double> shares;
    for (int i = 0; i < 3; ++i) {
        const double start = seconds(CLOCK_MONOTONIC);
        const double taken = cpuMilliseconds(watch) / 1000;
        shares.push_back(100 * taken / (seconds(CLOCK_MONOTONIC) - start));
    }
    return median(std::move(shares));
}

double paintEventsPerSecond() {
    const PaintEvents events;
    const double start = seconds(CLOCK_MONOTONIC);
    watch();
    return events.count / (seconds(CLOCK_MONOTONIC) - start);
}

void awaitPaint(const std::function<void()>& open) {
    const PaintEvents events;
    open();
    while (events.count == 0)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void emptyPool() { QThreadPool::globalInstance()->waitForDone(); }

void traced(const std::string& name, const std::function<void()>& action) {
    const double start = seconds(CLOCK_REALTIME);
    action();
    std::printf("%s %.6f %.6f\n", name.c_str(), start, seconds(CLOCK_REALTIME));
    std::fflush(stdout);
}

void watch() { wait(observed); }

}  // namespace Bench
