#include "tests/ui/kit/hand.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/meterbar.hpp"
#include "ui/kit/outputmeters.hpp"

#include <gtest/gtest.h>

#include <QScreen>

#include <QAnimationDriver>
#include <QPaintEvent>

#include <cmath>
#include <limits>

namespace {

constexpr float silence = -std::numeric_limits<float>::infinity();
constexpr float none = std::numeric_limits<float>::quiet_NaN();

/// The frames of a screen, as fast as the test wants them.
class Frames : public QAnimationDriver {
public:
    Frames() { install(); }
    ~Frames() override { uninstall(); }

    qint64 elapsed() const override { return now; }

    void pass(int ms) {
        for (const qint64 end = now + ms; now < end;) {
            QApplication::processEvents();
            now += 10;
            advance();
        }
        QApplication::processEvents();
    }

private:
    qint64 now = 0;
};

/// How many rows of a bar are lit.
int litRows(QWidget& bar) {
    const QImage image = Hand::picture(bar, 1);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += qRed(image.pixel(image.width() / 2, y)) > 100 ? 1 : 0;
    return rows;
}

TEST(MeterBarTest, SpansMinus60To6) {
    const struct {
        float level;
        double fraction;
    } cases[] = {{-60, 0}, {-200, 0}, {silence, 0}, {none, 0}, {-27, 0.5}, {6, 1}, {40, 1}, {-silence, 0}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(Kit::MeterBar::fractionOf(c.level), c.fraction) << c.level;
}

TEST(MeterBarTest, OffScreenIsAtTheCurrentValueAndOnScreenGetsThere) {
    Kit::MeterBar bar(5, nullptr);
    bar.resize(bar.width(), 100 + 2 * Kit::MeterBar::glow);
    bar.setLevel(-27);
    EXPECT_NEAR(litRows(bar), 50, 1);
    Frames frames;
    Hand::showActive(bar);
    bar.setLevel(6);
    frames.pass(50);
    EXPECT_NEAR(litRows(bar), 75, 20) << "on its way";
    frames.pass(60);
    EXPECT_NEAR(litRows(bar), 100, 1);
    bar.setLevel(-60);
    frames.pass(20);
    bar.hide();
    EXPECT_EQ(litRows(bar), 0) << "hidden on its way";
}

TEST(MeterBarTest, ItsLightIsNotCutOff) {
    Kit::MeterBar bar(5, nullptr);
    bar.resize(bar.width(), 100);
    bar.setLevel(6);
    for (const int ratio : {1, 2})
        EXPECT_LE(Hand::inkAtBorder(Hand::picture(bar, ratio)), 4) << ratio;
}

TEST(AnalogVUTest, IsLinearInVoltage) {
    const struct {
        double vu, angle;
    } cases[] = {{silence, -50}, {none, -50}, {-20, -42.92}, {0, 20.79}, {3, 50}, {6, 54}, {500, 54}};
    for (const auto& c : cases)
        EXPECT_NEAR(Kit::AnalogVU::needleAngle(c.vu), c.angle, 0.01) << c.vu;
}

TEST(AnalogVUTest, LightsItsLampAbove3AndReadsItsLevelOut) {
    Kit::AnalogVU meter("ENTRADA L", -18, nullptr);
    meter.resize(320, 220);
    const struct {
        float level;
        const char* text;
    } cases[] = {{silence, "-inf VU"}, {none, "-inf VU"}, {-18, "0 VU"}, {-15, "3 VU"}, {-28, "-10 VU"}};
    for (const auto& c : cases) {
        meter.setLevel(c.level);
        EXPECT_EQ(meter.valueText(), c.text);
    }
    const auto redOfLamp = [&] { return qRed(Hand::picture(meter, 1).pixel(296, 23)); };
    meter.setLevel(-15);
    EXPECT_LT(redOfLamp(), 100) << "full scale is not yet over";
    meter.setLevel(-14.9F);
    EXPECT_GT(redOfLamp(), 200);
}

TEST(AnalogVUTest, TheNeedleSwingsPastAndSettles) {
    Kit::AnalogVU meter("ENTRADA L", -18, nullptr);
    meter.resize(320, 220);
    const QImage silent = Hand::picture(meter, 1);
    meter.setLevel(-18);
    const QImage settled = Hand::picture(meter, 1);
    meter.setLevel(silence);
    EXPECT_EQ(Hand::picture(meter, 1), silent);
    Frames frames;
    Hand::showActive(meter);
    meter.setLevel(-18);
    frames.pass(120);
    EXPECT_NE(Hand::picture(meter, 1), silent);
    EXPECT_NE(Hand::picture(meter, 1), settled);
    frames.pass(2000);
    EXPECT_EQ(Hand::picture(meter, 1), settled);
}

/// Counts what is painted, and how much of it.
class Background : public QWidget {
public:
    QRect painted;

protected:
    void paintEvent(QPaintEvent* event) override { painted |= event->rect(); }
};

TEST(MeterTest, AnUpdateRepaintsTheMetersAlone) {
    Background window;
    window.resize(600, 400);
    Kit::AnalogVU needle("ENTRADA L", -18, &window);
    needle.setGeometry(10, 10, 300, 200);
    Kit::OutputMeters outputs(4, 300, &window);
    outputs.setGeometry(350, 10, 100, 360);
    Hand::showActive(window);
    Frames frames;
    window.painted = {};
    needle.setLevel(-12);
    outputs.setLevels({-12, -6, 0, 3});
    frames.pass(100);
    EXPECT_FALSE(window.painted.isEmpty());
    EXPECT_TRUE((needle.geometry() | outputs.geometry()).contains(window.painted));
    frames.pass(2000);
    window.painted = {};
    needle.setLevel(-12);
    outputs.setLevels({-12, -6, 0, 3});
    frames.pass(100);
    EXPECT_TRUE(window.painted.isEmpty()) << "the same levels again";
}

// Frames redraw parts; together they show what drawing it all would.
TEST(MeterTest, OnTheScreenStandsWhatIsDrawn) {
    QWidget window;
    window.resize(400, 300);
    Kit::AnalogVU needle("ENTRADA L", -18, &window);
    needle.setGeometry(10, 10, 300, 200);
    Kit::MeterBar bar(5, &window);
    bar.setGeometry(340, 10, bar.width(), 250);
    Hand::showActive(window);
    Frames frames;
    for (const float level : {-6.0F, -40.0F, -15.0F}) {
        needle.setLevel(level);
        bar.setLevel(level);
        frames.pass(150);
        frames.pass(1500);
        const QImage screen =
            window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
        const QImage drawn = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(screen.size(), drawn.size());
        int different = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x)
                different += std::abs(qRed(screen.pixel(x, y)) - qRed(drawn.pixel(x, y))) > 3 ? 1 : 0;
        EXPECT_EQ(different, 0) << level;
    }
}

}  // namespace
