#include "tests/ui/kit/frames.hpp"
#include "tests/ui/kit/hand.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/animation.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/polar.hpp"

#include <gtest/gtest.h>

#include <QPaintEvent>
#include <QScreen>

#include <cmath>
#include <limits>

namespace {

constexpr float silence = -std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();

int litRows(QWidget& bar) {
    const QImage image = Hand::picture(bar);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += qRed(image.pixel(image.width() / 2, y)) > 100 ? 1 : 0;
    return rows;
}

TEST(MeterBarsTest, SpanMinus60To6JumpWhileHiddenAndMoveEvenlyOnTheScreen) {
    QWidget window;
    Kit::MeterBars bar(
        {"Nível"}, {5, 0}, [](QPainter&) {}, &window);
    bar.resize(bar.width(), 100 + 2 * Kit::MeterBars::glow);
    const std::pair<float, int> cases[] = {{-200, 0}, {silence, 0},  {none, 0},
                                           {40, 100}, {-silence, 0}, {-27, 50}};
    for (const auto& [level, rows] : cases) {
        bar.setLevels({level});
        EXPECT_NEAR(litRows(bar), rows, 1) << level;
    }
    EXPECT_GT(Hand::colorAt(bar, {7.5, 58}).green(), Hand::colorAt(bar, {7.5, 102}).green() + 50)
        << "lighter at its top";
    Frames frames;
    Hand::showActive(window);
    bar.setLevels({6});
    frames.pass(50);
    EXPECT_NEAR(litRows(bar), 75, 20) << "on its way";
    frames.pass(70);
    EXPECT_NEAR(litRows(bar), 100, 1);
    for (const QPointF border : {QPointF(0.5, 50.5), {14.5, 50.5}, {7.5, 0.5}, {7.5, 109.5}})
        EXPECT_LE(Hand::colorAt(bar, border).red(), 4) << "its glow is cut off";
}

// The shadow of the cap reaches under the bars.
TEST(MeterBarsTest, StandOnWhatTheirFaderDrawsNow) {
    const auto pictureAt = [](std::initializer_list<double> values) {
        Kit::Fader fader("Entrada", {-60, 6}, 0, Formats::decibels, {.levels = 2}, nullptr);
        fader.resize(64, 400);
        QImage last;
        for (const double value : values) {
            fader.setValue(value);
            last = Hand::picture(fader);
        }
        return last;
    };
    EXPECT_EQ(pictureAt({0, -30}), pictureAt({-30}));
}

struct AnalogVUTest : testing::Test {
    QWidget window;
    Kit::AnalogVU meter{"ENTRADA L", -18, &window};

    AnalogVUTest() { meter.resize(320, 220); }

    bool isNeedleAt(double angle) {
        constexpr QRectF face(9, 9, 302, 176);
        const QPointF pivot(face.center().x(), face.top() + 1.18 * face.height());
        return Hand::colorAt(meter, Kit::onCircle(pivot, 0.7 * face.height(), angle)).red() < 120;
    }
};

TEST_F(AnalogVUTest, TheNeedleStandsAtTheLevelAndThePeakLampLightsAbove3) {
    const struct {
        float level;
        const char* text;
        double angle;
        bool peak = false;
    } cases[] = {{silence, "-inf VU", -50}, {none, "-inf VU", -50},       {-28, "-10 VU", -27.6},
                 {-15, "3 VU", 50},         {-14.9F, "3 VU", 51.2, true}, {82, "100 VU", 54, true}};
    for (const auto& c : cases) {
        meter.setLevel(c.level);
        EXPECT_EQ(meter.valueText(), c.text);
        EXPECT_TRUE(isNeedleAt(c.angle) && !isNeedleAt(c.angle - 3)) << c.text;
        EXPECT_EQ(Hand::colorAt(meter, {296.5, 23.5}).red() > 200, c.peak) << c.text;
    }
}

TEST_F(AnalogVUTest, TheFaceDarkensEvenlyTowardsItsFoot) {
    int above = 255;
    for (int y = 40; y < 180; ++y) {
        const QColor color = Hand::colorAt(meter, {30.5, y + 0.5});
        EXPECT_GT(color.red(), color.green() + 25) << y << ": not warm";
        EXPECT_LE(color.green(), above + 2) << y;
        above = color.green();
    }
}

TEST_F(AnalogVUTest, TheNeedleSwingsPastItsTargetAndSettles) {
    Frames frames;
    Hand::showActive(window);
    meter.setLevel(-18);
    frames.pass(320);
    bool past = false;
    for (double angle = 25; angle < 34; angle += 0.5)
        past = past || isNeedleAt(angle);
    EXPECT_TRUE(past);
    frames.pass(2000);
    EXPECT_TRUE(isNeedleAt(20.8));
    Kit::Animation::reduceMotion(true);
    meter.setLevel(-28);
    EXPECT_TRUE(isNeedleAt(-27.6)) << "motion is reduced";
    Kit::Animation::reduceMotion(false);
}

/// Keeps what is repainted of it.
struct Background : QWidget {
    QRect painted;
    void paintEvent(QPaintEvent* event) override { painted |= event->rect(); }
};

// Each frame repaints only parts of the meters. The parts add up to what one repaint would draw.
TEST(MeterTest, FramesRepaintTheMetersAloneAndAddUpToAWholeRepaint) {
    Background window;
    window.resize(600, 400);
    Kit::AnalogVU needle("ENTRADA L", -18, &window);
    needle.setGeometry(10, 10, 300, 200);
    Kit::OutputMeters outputs(2, 300, &window);
    outputs.setGeometry(350, 10, 100, 360);
    Kit::Fader fader("Entrada", {-60, 6}, 0, Formats::decibels, {.levels = 2}, &window);
    fader.setGeometry(500, 10, 64, 360);
    Hand::showActive(window);
    Frames frames;
    for (const auto& [level, isNew] :
         {std::pair(-6.0F, true), {-40.0F, true}, {-15.0F, true}, {-15.0F, false}}) {
        window.painted = {};
        needle.setLevel(level);
        outputs.setLevels({level, level});
        fader.setLevels({level, level});
        fader.setValue(level);
        frames.pass(1650);
        EXPECT_EQ(window.painted.isEmpty(), !isNew) << level;
        EXPECT_TRUE((needle.geometry() | fader.geometry()).contains(window.painted) || !isNew);
        const QImage screen = window.screen()->grabWindow(window.winId()).toImage();
        const QImage drawn = window.grab().toImage();
        int different = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x)
                different += std::abs(qRed(screen.pixel(x, y)) - qRed(drawn.pixel(x, y))) > 3 ? 1 : 0;
        EXPECT_EQ(different, 0) << level;
    }
}

}  // namespace
