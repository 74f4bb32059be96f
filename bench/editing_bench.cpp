#include "bench/openwindow.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QApplication>

#include <algorithm>
#include <random>
#include <vector>

#include <ctime>

namespace {

using namespace Corvane;
using namespace Bench;
using namespace Wendril;
using namespace std::chrono_literals;

Kit::ValueControl& bass(OpenWindow& opened) {
    return OnScreen::find<Kit::ValueControl>(opened.window, "Graves");
}
QPointF middleOf(const QWidget& control) { return QRectF(control.rect()).center(); }

void knobDrag(benchmark::State& state) {
    StillChain chain;
    OpenWindow opened(*chain.model, simple(Page::tone));
    Drag drag(bass(opened), middleOf(bass(opened)));
    measureFrames(state, [&](int number) {
        drag.move(number);
        settle();
    });
}

void handleDrag(benchmark::State& state) {
    StillChain chain;
    OpenWindow opened(*chain.model, technical({TechPage::Kind::output, 0}));
    auto& graph = *OnScreen::all<Kit::EQGraph>(opened.window).at(0);
    Drag drag(graph, graph.placeOf(graph.shownHandles().front()));
    measureFrames(state, [&](int number) {
        drag.move(number);
        settle();
    });
}

void crossoverChange(benchmark::State& state) {
    StillChain chain;
    OpenWindow opened(*chain.model, technical({TechPage::Kind::crossover}));
    const std::uint8_t module = K7Q::index(ModuleKind::hpf, K7Q::outputs.front(), 0);
    measureFrames(state, [&](int number) {
        chain.model->set(module, {FilterValue{.fc = std::uint32_t(100 + number % 100), .type = 9}});
        settle();
    });
}

// What an edit of all speakers takes of the window's thread before it is painted: the values, the
// history and the views that watch them.
void editOfSixteenSpeakers(benchmark::State& state) {
    StillChain chain(16);
    const OpenWindow opened(*chain.model, simple(Page::tone));
    settle();
    int number = 0;
    for (auto _ : state)
        chain.model->setVolume(-(++number % 60));
}

double seconds(clockid_t clock) {
    std::timespec time{};
    ::clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

// The share of one core that the process takes, simulated chain included, and the window's thread.
template <class Action>
void measureShare(benchmark::State& state, Action during) {
    const double process = seconds(CLOCK_PROCESS_CPUTIME_ID);
    const double thread = seconds(CLOCK_THREAD_CPUTIME_ID);
    const double wall = seconds(CLOCK_MONOTONIC);
    for (auto _ : state)
        during();
    const double percent = 100 / (seconds(CLOCK_MONOTONIC) - wall);
    state.counters["core_percent"] = (seconds(CLOCK_PROCESS_CPUTIME_ID) - process) * percent;
    state.counters["window_percent"] = (seconds(CLOCK_THREAD_CPUTIME_ID) - thread) * percent;
}

void untouched(benchmark::State& state) {
    const LiveChain chain([](TimePoint) {});
    const OpenWindow opened(*chain.model, simple(Page::tone));
    wait(500ms);
    measureShare(state, [] { wait(10s); });
}

void knobDragAt60(benchmark::State& state) {
    const LiveChain chain([](TimePoint) {});
    OpenWindow opened(*chain.model, simple(Page::tone));
    wait(500ms);
    Drag drag(bass(opened), middleOf(bass(opened)));
    measureShare(state, [&] {
        constexpr auto frame = 1'000'000us / 60;
        const auto start = std::chrono::steady_clock::now();
        for (int number = 1; number <= 300; ++number) {
            drag.move(number);
            const auto left = start + number * frame - std::chrono::steady_clock::now();
            wait(std::max(0ms, std::chrono::round<std::chrono::milliseconds>(left)));
        }
    });
}

// From the mouse event to the last byte of the frame in the port. The pauses are random, so the event
// falls anywhere between two meter readings.
void knobToLine(benchmark::State& state) {
    constexpr std::int64_t none = 0;
    std::atomic<std::int64_t> sent = none;
    const LiveChain chain([&sent](TimePoint at) {
        std::int64_t first = none;
        sent.compare_exchange_strong(first, at.time_since_epoch().count());
    });
    OpenWindow opened(*chain.model, simple(Page::tone));
    Drag drag(bass(opened), middleOf(bass(opened)));
    std::mt19937 random;
    std::uniform_int_distribution pause(150, 250);
    std::vector<double> times;
    for (auto _ : state) {
        wait(std::chrono::milliseconds(pause(random)));
        sent = none;
        const auto start = std::chrono::steady_clock::now();
        drag.move(int(times.size()) + 1);
        while (sent == none)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const TimePoint at{TimePoint::duration(sent)};
        times.push_back(std::chrono::duration<double>(at - start).count());
        state.SetIterationTime(times.back());
    }
    std::ranges::sort(times);
    state.counters["median_ms"] = 1000 * times.at(times.size() / 2);
    state.counters["worst_ms"] = 1000 * times.back();
}

BENCHMARK(knobDrag)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(handleDrag)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(crossoverChange)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(editOfSixteenSpeakers)->Unit(benchmark::kMillisecond);
BENCHMARK(knobToLine)->Iterations(100)->Repetitions(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(knobDragAt60)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(untouched)->Iterations(1)->Repetitions(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
