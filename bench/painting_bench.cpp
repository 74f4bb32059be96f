#include "bench/uidesk.hpp"
#include "bench/uimeasurements.hpp"

#include <QAnimationDriver>
#include <QPixmapCache>

#include <array>
#include <memory>
#include <vector>

namespace {

using namespace Corvane;
using namespace Desk;

// From nothing to a window on the screen, with no picture kept from before.
void firstPaint(benchmark::State& state, const ShownPage& page) {
    StillChain chain;
    for (auto _ : state) {
        QPixmapCache::clear();
        auto opened = std::make_unique<OpenWindow>(*chain.model, page);
        state.PauseTiming();
        opened.reset();
        state.ResumeTiming();
    }
}

void repaint(benchmark::State& state, const ShownPage& page) {
    StillChain chain;
    OpenWindow opened(*chain.model, page);
    measureFrames(state, [&](int) { opened.window.repaint(); });
}

// The clock of all animations, which moves by hand.
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

// New levels on all channels and the next frame of what they set in motion.
void meterUpdate(benchmark::State& state, const ShownPage& page) {
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

struct Measurement {
    const char* name;
    void (*run)(benchmark::State& state, const ShownPage& page);
};

constexpr Measurement measurements[] = {
    {"firstPaint/", firstPaint},
    {"repaint/", repaint},
    {"meterUpdate/", meterUpdate},
};

}  // namespace

// Painting may use several threads.
void addPainting() {
    for (const auto& [name, run] : measurements)
        for (const ShownPage& page : pages())
            benchmark::RegisterBenchmark((name + page.name).c_str(), run, page)
                ->MeasureProcessCPUTime()
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
}
