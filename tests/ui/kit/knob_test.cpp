#include "tests/ui/kit/hand.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/timeknob.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

/// A control whose owner keeps single precision, as the model does.
template <class Type>
struct Owned {
    Type control;
    std::vector<double> reports;

    template <class... Arguments>
    explicit Owned(double value, Arguments&&... arguments)
        : control(std::forward<Arguments>(arguments)..., nullptr) {
        control.setValue(value);
        control.onChange = [this](double next) {
            reports.push_back(next);
            control.setValue(static_cast<float>(next));
        };
        control.show();
    }

    double value() const { return control.value(); }
};

struct Threshold : Owned<Kit::Knob> {
    explicit Threshold(double value, Kit::Range range = {-20, 22}, double step = 0.5)
        : Owned(value, "Threshold", range, 5, step, Formats::signedDecibels, Kit::Knob::Look{}) {}
};

struct Volume : Owned<Kit::Fader> {
    explicit Volume(double value, Kit::Range range = {-60, 6})
        : Owned(value, "Entrada", range, 0, Formats::decibels, Kit::Fader::Look{.height = 230}) {}
};

TEST(KnobTest, DragsSweepTheRangeIn220Points) {
    const struct {
        double start, up;
        Qt::KeyboardModifiers modifiers;
        double end;
    } cases[] = {
        {-20, 110, {}, 1},
        {-20, 110, Qt::AltModifier, -16},
        {-20, 110, Qt::ShiftModifier, -16},
        {-20, 220, {}, 22},
        {-20, 900, {}, 22},
        {22, 900, {}, 22},
        {22, -900, {}, -20},
        {0, 1, {}, 0},
        {0, 2, {}, 0.5},
    };
    for (const auto& c : cases) {
        Threshold threshold(c.start);
        Hand::drag(threshold.control, {40, -c.up}, c.modifiers);
        EXPECT_DOUBLE_EQ(threshold.value(), c.end) << c.start << " by " << c.up;
    }
}

TEST(KnobTest, DraggingBackFromBeyondTheEndMovesAtOnce) {
    Threshold threshold(20);
    Hand::pull(threshold.control, {{0, -500}, {0, 20}});
    EXPECT_DOUBLE_EQ(threshold.value(), 16);
}

TEST(KnobTest, ReportsEachValueOnce) {
    Threshold ratio(1, {1, 20}, 0.1);
    Hand::pull(ratio.control, {{0, -2}, {0, -2}, {1, -2}, {0, -2}});
    EXPECT_EQ(ratio.reports.size(), 1U);
    EXPECT_NE(ratio.value(), 1.2) << "the owner keeps a float";
    ratio.control.propose(1.2);
    EXPECT_EQ(ratio.reports.size(), 1U);
}

TEST(KnobTest, ProposalsEndWithinTheRangeAndOnTheStep) {
    const struct {
        Kit::Range range;
        double step, candidate, end;
    } cases[] = {
        {{0, 1}, 0.4, 9, 0.8},        // the end is off the step
        {{0.5, 3}, 0.4, 0, 0.8},      //
        {{0.3, 50}, 0.01, 0.1, 0.3},  // the end is on the step, but for noise
        {{0, 0.3}, 0.1, 9, 0.3},      //
        {{0, 1}, 0, 0.123, 0.123},   {{0, 1}, 0, 9, 1},
    };
    for (const auto& c : cases) {
        Threshold knob(0.7, c.range, c.step);
        knob.control.propose(c.candidate);
        EXPECT_FLOAT_EQ(knob.value(), c.end) << c.candidate << " in steps of " << c.step;
        EXPECT_LE(knob.reports.back(), c.range.upper);
        EXPECT_GE(knob.reports.back(), c.range.lower);
    }
    Threshold knob(0.5);
    knob.control.propose(std::nan(""));
    EXPECT_TRUE(knob.reports.empty());
    knob.control.propose(-0.1);
    EXPECT_EQ(knob.control.valueText(), "+0.0 dB") << "zero has no sign";
}

TEST(KnobTest, KeysWheelAndDoubleClick) {
    Threshold knob(0);
    Threshold continuous(0.5, {0, 1}, 0);
    const auto press = [](QWidget& control, int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&control, static_cast<Qt::Key>(key), modifiers);
    };
    press(knob.control, Qt::Key_Up);
    press(knob.control, Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(knob.value(), 1) << "there is nothing finer than the step";
    press(knob.control, Qt::Key_Down);
    press(knob.control, Qt::Key_Left);
    press(knob.control, Qt::Key_PageUp);
    EXPECT_EQ(knob.value(), 5);
    press(knob.control, Qt::Key_PageDown);
    EXPECT_EQ(knob.value(), 0);
    press(knob.control, Qt::Key_Home);
    EXPECT_EQ(knob.value(), 5);
    Hand::wheel(knob.control, 120);
    Hand::wheel(knob.control, 60);
    Hand::wheel(knob.control, 60);
    EXPECT_EQ(knob.value(), 6) << "half notches add up";
    Hand::wheel(knob.control, -360);
    EXPECT_EQ(knob.value(), 4.5);
    QTest::mouseDClick(&knob.control, Qt::LeftButton);
    EXPECT_EQ(knob.value(), 5);

    press(continuous.control, Qt::Key_Up);
    EXPECT_FLOAT_EQ(continuous.value(), 0.525);
    press(continuous.control, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(continuous.value(), 0.52);
}

TEST(KnobTest, ADragEndsWithTheControlsUse) {
    Threshold knob(0);
    Hand::pull(knob.control, {{0, -11}});
    EXPECT_EQ(knob.value(), 2);
    knob.control.setEnabled(false);
    knob.control.propose(10);
    knob.control.setEnabled(true);
    Hand::mouse(knob.control, QEvent::MouseMove, {0, 0});
    knob.control.hide();
    knob.control.show();
    Hand::mouse(knob.control, QEvent::MouseMove, {0, -100});
    EXPECT_EQ(knob.value(), 2);
}

TEST(TimeKnobTest, WalksThroughTheTableOfTimesAndSpeaksMilliseconds) {
    std::uint32_t set = 0;
    const std::unique_ptr<Kit::TimeKnob> attack(Kit::timeKnob(
        "Attack", 724, 96, [&set](std::uint32_t ms) { set = ms; }, nullptr));
    EXPECT_EQ(attack->valueText(), "724 ms");
    Hand::wheel(*attack, 120);
    EXPECT_GT(set, 724U);
    QTest::mouseDClick(attack.get(), Qt::LeftButton);
    EXPECT_EQ(set, 45U);
}

TEST(FaderTest, TravelsItsTrackInStepsOfATenth) {
    const struct {
        double start, down;
        Qt::KeyboardModifiers modifiers;
        double end;
    } cases[] = {
        {6, 200, {}, -60}, {6, 100, {}, -27}, {6, 100, Qt::AltModifier, -27},
        {0, 1, {}, -0.3},  {0, -900, {}, 6},
    };
    for (const auto& c : cases) {
        Volume volume(c.start);
        Hand::drag(volume.control, {0, c.down}, c.modifiers);
        EXPECT_FLOAT_EQ(volume.value(), c.end) << c.start << " by " << c.down;
    }
    Volume volume(6);
    Hand::pull(volume.control, {{0, -300}, {0, 10}});
    EXPECT_FLOAT_EQ(volume.value(), 2.7) << "moves at once when dragged back";
}

TEST(FaderTest, KeysTakeUsefulStepsAndFineOnes) {
    Volume volume(0);
    Hand::wheel(volume.control, -120);
    EXPECT_FLOAT_EQ(volume.value(), -0.5);
    QTest::keyClick(&volume.control, Qt::Key_Up, Qt::AltModifier);
    EXPECT_FLOAT_EQ(volume.value(), -0.4);
    Volume delay(0, {0, 5});
    QTest::keyClick(&delay.control, Qt::Key_Up);
    EXPECT_FLOAT_EQ(delay.value(), 0.1);
    QTest::mouseDClick(&delay.control, Qt::LeftButton);
    EXPECT_EQ(delay.value(), 0);
}

}  // namespace
