#include "tests/ui/kit/hand.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/polar.hpp"

#include <gtest/gtest.h>

#include <QAnimationDriver>
#include <QPaintEvent>
#include <QScreen>

#include <cmath>
#include <limits>

namespace {

constexpr float silence = -std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();

/// The frames of a screen, as fast as the test wants them.
struct Frames : QAnimationDriver {
    qint64 now = 0;

    Frames() { install(); }
    ~Frames() override { uninstall(); }
    qint64 elapsed() const override { return now; }

    void pass(int ms) {
        for (const qint64 end = now + ms; now < end; advance())
            QApplication::processEvents(), now += 10;
        QApplication::processEvents();
    }
};

int litRows(QWidget& bar) {
    const QImage image = Hand::picture(bar);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += qAlpha(image.pixel(image.width() / 2, y)) > 100 ? 1 : 0;
    return rows;
}

TEST(MeterBarTest, SpansMinus60To6JumpsWhileHiddenAndMovesEvenlyOnTheScreen) {
    Kit::MeterBar bar(5, nullptr);
    bar.resize(bar.width(), 100 + 2 * Kit::MeterBar::glow);
    const std::pair<float, int> cases[] = {{-60, 0}, {-200, 0}, {silence, 0},  {none, 0}, {-27, 50},
                                           {6, 100}, {40, 100}, {-silence, 0}, {-27, 50}};
    for (const auto& [level, rows] : cases) {
        bar.setLevel(level);
        EXPECT_NEAR(litRows(bar), rows, 1) << level;
    }
    EXPECT_GT(Hand::colorAt(bar, {7.5, 58}).green(), Hand::colorAt(bar, {7.5, 102}).green() + 50)
        << "lighter at its top";
    Frames frames;
    Hand::showActive(bar);
    bar.setLevel(6);
    frames.pass(50);
    EXPECT_NEAR(litRows(bar), 75, 20) << "on its way";
    frames.pass(70);
    EXPECT_NEAR(litRows(bar), 100, 1);
    for (const int ratio : {1, 2})
        EXPECT_LE(Hand::opacityAtBorder(Hand::picture(bar, ratio)), 4) << "its glow is cut off";
    bar.setLevel(-60);
    frames.pass(20);
    bar.hide();
    EXPECT_EQ(litRows(bar), 0) << "hidden on its way";
}

struct AnalogVUTest : testing::Test {
    QWidget window;
    Kit::AnalogVU meter{"ENTRADA L", -18, &window};

    AnalogVUTest() { meter.resize(320, 220); }

    // At a distance from the pivot of the needle, in heights of the face.
    QColor colorAt(double angle, double distance) {
        constexpr QRectF face(9, 9, 302, 176);
        const QPointF pivot(face.center().x(), face.top() + 1.18 * face.height());
        return Hand::colorAt(meter, Kit::onCircle(pivot, distance * face.height(), angle));
    }

    bool isNeedleAt(double angle) { return colorAt(angle, 0.7).red() < 120; }
};

TEST_F(AnalogVUTest, ItsScaleIsLinearInVoltageAndRedAboveZero) {
    const std::pair<double, double> angles[] = {{silence, -50}, {none, -50}, {-20, -42.92}, {0, 20.79},
                                                {3, 50},        {6, 54},     {500, 54}};
    for (const auto& [vu, angle] : angles)
        EXPECT_NEAR(Kit::AnalogVU::needleAngle(vu), angle, 0.01) << vu;
    const std::pair<double, std::vector<double>> marks[] = {{0.88, {-18, -4.5, -0.2, 0.2, 2.8}},
                                                            {0.92, {-10, -2, 0, 1, 3}}};
    for (const auto& [distance, list] : marks)
        for (const double vu : list) {
            const QColor color = colorAt(Kit::AnalogVU::needleAngle(vu), distance);
            EXPECT_LT(color.green(), 110) << vu << ": nothing here";
            EXPECT_EQ(color.red() > 150, vu > 0) << vu;
        }
    for (const double outside : {-23.0, 3.4})
        EXPECT_GT(colorAt(Kit::AnalogVU::needleAngle(outside), 0.88).green(), 120) << outside;
}

TEST_F(AnalogVUTest, TheNeedleStandsAtTheLevelAndThePeakLampLightsAbove3) {
    const struct {
        float level;
        const char* text;
        double angle;
        bool peak = false;
    } cases[] = {{silence, "-inf VU", -50}, {none, "-inf VU", -50}, {-28, "-10 VU", -27.6},
                 {-18, "0 VU", 20.8},       {-15, "3 VU", 50},      {-14.9F, "3 VU", 51.2, true}};
    for (const auto& c : cases) {
        meter.setLevel(c.level);
        EXPECT_EQ(meter.valueText(), c.text);
        EXPECT_TRUE(isNeedleAt(c.angle) && !isNeedleAt(c.angle - 3)) << c.text;
        EXPECT_EQ(Hand::colorAt(meter, {296.5, 23.5}).red() > 200, c.peak) << c.text;
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
    window.hide();
    meter.setLevel(silence);
    EXPECT_TRUE(isNeedleAt(-50)) << "at once while hidden";
}

TEST(OutputMetersTest, TheReadOutIsTheHighestLevel) {
    const std::pair<std::vector<float>, const char*> cases[] = {
        {{-12, -6.24F, -30, -7}, "-6.2 dB"}, {{silence, silence}, "—"}, {{}, "—"}};
    for (const auto& [levels, text] : cases) {
        Kit::OutputMeters meters(4, 300, nullptr);
        meters.setLevels(levels);
        const auto children = meters.findChildren<QWidget*>();
        EXPECT_TRUE(std::ranges::count(children, text, &QWidget::accessibleName)) << text;
    }
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
    Hand::showActive(window);
    Frames frames;
    for (const float level : {-6.0F, -40.0F, -15.0F, -15.0F}) {
        const bool isNew = needle.valueText() != QString::asprintf("%.0f VU", level + 18);
        window.painted = {};
        needle.setLevel(level);
        outputs.setLevels({level, level});
        frames.pass(1650);
        EXPECT_EQ(window.painted.isEmpty(), !isNew) << level;
        EXPECT_TRUE((needle.geometry() | outputs.geometry()).contains(window.painted) || !isNew);
        const auto rgb = [](const QPixmap& pixmap) {
            return pixmap.toImage().convertToFormat(QImage::Format_RGB32);
        };
        const QImage screen = rgb(window.screen()->grabWindow(window.winId()));
        const QImage drawn = rgb(window.grab());
        int different = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x)
                different += std::abs(qRed(screen.pixel(x, y)) - qRed(drawn.pixel(x, y))) > 3 ? 1 : 0;
        EXPECT_EQ(different, 0) << level;
    }
}

}  // namespace
