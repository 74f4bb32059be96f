#include "bench/openwindow.hpp"

#include "ui/kit/pictures.hpp"

#include <QAnimationDriver>

#include <array>
#include <memory>
#include <vector>

namespace {

using namespace Corvane;
using namespace Bench;

ShownPage pageOf(benchmark::State& state) {
    ShownPage page = pages().at(static_cast<std::size_t>(state.range()));
    state.SetLabel(page.name);
    return page;
}

// Builds and paints a window, with the cache of pictures empty.
void firstPaint(benchmark::State& state) {
    const ShownPage page = pageOf(state);
    StillChain chain;
    for (auto _ : state) {
        Paint::dropKept();
        auto opened = std::make_unique<OpenWindow>(*chain.model, page);
        state.PauseTiming();
        opened.reset();
        state.ResumeTiming();
    }
}

void repaint(benchmark::State& state) {
    const ShownPage page = pageOf(state);
    StillChain chain;
    OpenWindow opened(*chain.model, page);
    measureFrames(state, [&](int) { opened.window.repaint(); });
}

// The clock of all animations; `next` moves it by one frame.
class Frames final : public QAnimationDriver {
public:
    Frames() { install(); }
    ~Frames() override { uninstall(); }
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;

    void next() {
        constexpr int frameMs = 33;
        now += frameMs;
        advance();
    }

    qint64 elapsed() const override { return now; }

protected:
    void start() override {
        now = 0;
        QAnimationDriver::start();
    }

private:
    qint64 now = 0;
};

// New levels on all channels and one frame of the animations that they start.
void meterUpdate(benchmark::State& state) {
    const ShownPage page = pageOf(state);
    const std::array<std::vector<float>, 2> readings{{
        {-12, -14, -6, -9, -18, -24},
        {-20, -9, -15, -21, -8, -13},
    }};
    StillChain chain;
    Frames frames;
    OpenWindow opened(*chain.model, page);
    measureFrames(state, [&](int number) {
        chain.model->meters = readings.at(std::size_t(number % 2));
        settle();
        frames.next();
        settle();
    });
}

// Painting may use several threads.
void ofEveryPage(benchmark::internal::Benchmark* measured) {
    measured->DenseRange(0, static_cast<int>(pages().size()) - 1)->ArgName("page");
    measured->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(firstPaint)->Apply(ofEveryPage);
BENCHMARK(repaint)->Apply(ofEveryPage);
BENCHMARK(meterUpdate)->Apply(ofEveryPage);

}  // namespace
