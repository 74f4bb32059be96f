#include "tests/ui/kit/hand.hpp"
#include "tests/ui/kit/pool.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/theme.hpp"

#include <gtest/gtest.h>

#include <QThreadPool>

#include <cmath>
#include <thread>

namespace {

/// Draws `frame` 0 to 40 at each ratio, once for the kept pictures and once more. The toolkit gives tall
/// fills to its thread pool, which costs more CPU time than it saves in a window's frame.
void expectNoThreads(QWidget& control, const std::function<void(int)>& frame) {
    for (const int ratio : {1, 2, 3}) {
        QImage screen(control.size() * ratio, QImage::Format_RGB32);
        screen.setDevicePixelRatio(ratio);
        for (const bool again : {false, true}) {
            QThreadPool::globalInstance()->waitForDone();
            while (Tests::threadsOfThePool() > 0)
                std::this_thread::yield();  // they end a little later
            for (int number = 0; number <= 40; ++number) {
                frame(number);
                control.render(&screen, {}, {}, QWidget::DrawChildren);
                if (!again) continue;
                ASSERT_EQ(Tests::threadsOfThePool(), 0) << "ratio " << ratio << ", frame " << number;
            }
        }
    }
}

TEST(MotionTest, NoKnobStartsAThread) {
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {240, true, "-12", "+12"}, nullptr);
    const QPointF middle = QRectF(knob.rect()).center();
    Hand::mouse(knob, QEvent::MouseButtonPress, middle);
    expectNoThreads(knob, [&](int number) {
        Hand::mouse(knob, QEvent::MouseMove, middle + QPointF(0, 110 - 5.5 * number));
    });
}

TEST(MotionTest, NoFaderStartsAThread) {
    Kit::Fader fader("Entrada", {-60, 6}, 0, Formats::decibels, {560, 2, false}, nullptr);
    fader.resize(fader.sizeHint());
    const QPointF middle = QRectF(fader.rect()).center();
    Hand::mouse(fader, QEvent::MouseButtonPress, middle);
    expectNoThreads(fader, [&](int number) {
        fader.setLevels({float(-number), float(number - 50)});
        Hand::mouse(fader, QEvent::MouseMove, middle + QPointF(0, 10 * number - 200));
    });
}

TEST(MotionTest, NoMeterStartsAThread) {
    QWidget meters;
    Kit::AnalogVU needle("ENTRADA L", -18, &meters);
    Kit::OutputMeters outputs(4, 500, &meters);
    meters.resize(700, 600);
    needle.setGeometry(0, 0, 560, 380);
    outputs.setGeometry(600, 0, 100, 590);
    expectNoThreads(meters, [&](int number) {
        const auto level = float(-40 + number);
        needle.setLevel(level);
        outputs.setLevels({level, -level, level, level});
    });
}

TEST(MotionTest, NoGraphStartsAThread) {
    Kit::EQGraph graph(500, nullptr);
    graph.resize(1200, graph.height());
    Kit::EQGraph::Handle handle{.label = "1", .color = Theme::accent, .readOut = "1.00k"};
    const auto show = [&](double fc, double gain) {
        handle.fc = fc, handle.gain = gain;
        std::vector<double> levels;
        for (const double hz : Kit::EQPlot::freqs())
            levels.push_back(gain * std::exp(-std::pow(4 * std::log10(hz / fc), 2)));
        graph.setCurves(
            {{"Out0", Theme::accent, levels, true}, {"Out1", Theme::good, {levels.rbegin(), levels.rend()}}});
        graph.setHandles({handle});
    };
    show(1000, 0);
    graph.onDrag = [&](int, double fc, double gain) { show(fc, gain); };
    graph.curveOf = [&](int) { return graph.shownCurves().front().db; };
    expectNoThreads(graph, [&](int number) {
        const QPointF place = graph.placeOf(handle);
        if (number % 40 == 0) Hand::mouse(graph, QEvent::MouseButtonPress, place);
        if (number == 20) Hand::mouse(graph, QEvent::MouseButtonRelease, place);  // the cross appears
        Hand::mouse(graph, QEvent::MouseMove, place + QPointF(number % 2 == 0 ? 30 : -20, 12 - number));
    });
}

}  // namespace
