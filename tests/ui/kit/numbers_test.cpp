#include "tests/ui/kit/hand.hpp"
#include "tests/ui/onscreen.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/numbereditor.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QLocale>

#include <memory>

namespace {

using Kit::ScrubField;
using Number = std::unique_ptr<Kit::ValueControl>;
using Gesture = std::function<void(QWidget&)>;

Number knob(Kit::Range range, double step) {
    return std::make_unique<Kit::Knob>("Knob", range, 5, step, Formats::signedDecibels, Kit::Knob::Look{},
                                       nullptr);
}
Number fader(Kit::Range range) {
    return std::make_unique<Kit::Fader>("Fader", range, 0, Formats::decibels, Kit::Fader::Look{230}, nullptr);
}
Number field(Kit::Range range, const ScrubField::Look& look) {
    return std::make_unique<ScrubField>("Field", range, Formats::decibels, look, nullptr);
}
Number threshold() { return knob({-20, 22}, 0.5); }
Number volume() { return fader({-60, 6}); }
Number gain() { return field({-12, 12}, {.step = 0.1}); }
Number frequency() { return field({20, 22000}, {.step = 1, .logarithmic = true}); }

/// A control whose owner takes over each report, in single precision as the model does.
struct Owned {
    Number number;
    Kit::ValueControl& control = *number;
    int reports = 0;

    Owned(Number made, double value)
        : number(std::move(made)) {
        control.setValue(value);
        control.onChange = [this](double next) { ++reports, control.setValue(static_cast<float>(next)); };
        control.show();
    }
};

Gesture drag(double right, double down, Qt::KeyboardModifiers held = {}) {
    return [=](QWidget& control) { Hand::drag(control, {right, down}, held); };
}

Gesture dragBackFromBeyondTheRange(double right, double down) {
    return [=](QWidget& control) { Hand::pull(control, {{9000, -9000}, {right, down}}); };
}

Gesture key(Qt::Key key, Qt::KeyboardModifiers held = {}) {
    return [=](QWidget& control) { QTest::keyClick(&control, key, held); };
}

Gesture doubleClick(Qt::MouseButton button) {
    return [=](QWidget& control) { QTest::mouseDClick(&control, button); };
}

TEST(NumberTest, DragsKeysAndDoubleClicksChangeTheValue) {
    using enum Qt::Key;
    constexpr auto alt = Qt::AltModifier;
    constexpr auto shift = Qt::ShiftModifier;
    struct Case {
        double start;
        Gesture act;
        double end;
    };
    const std::pair<Number (*)(), std::vector<Case>> cases[] = {
        {threshold, {{-20, drag(40, -110), 1}, {0, drag(0, -1), 0}, {-20, drag(0, -110, shift), -16}}},
        {threshold, {{22, drag(0, 900), -20}, {20, dragBackFromBeyondTheRange(0, 20), 16}}},
        {threshold, {{0, key(Key_Right), 0.5}, {0, key(Key_Down), -0.5}, {0, key(Key_PageDown), -5}}},
        {threshold, {{0, key(Key_Home), 5}, {0, key(Key_Up, alt), 0.5}}},
        {threshold, {{0, doubleClick(Qt::RightButton), 0}, {0, doubleClick(Qt::LeftButton), 5}}},
        {volume, {{6, drag(0, 200), -60}, {0, drag(0, 1), -0.3}, {6, drag(0, 100, alt), -27}}},
        {volume, {{0, key(Key_Down), -0.5}, {0, key(Key_Up, alt), 0.1}}},
        {gain, {{0, drag(4, 0), 0.1}, {0, drag(20, 20), 0}, {0, drag(100, 0, shift), 0.5}}},
        {frequency, {{1000, drag(1.4, 0), 1000}, {1000, drag(2, 0), 1016}, {1000, drag(0, 90), 500}}},
        {frequency, {{1000, drag(90, 0, alt), 1149}, {1000, dragBackFromBeyondTheRange(1, 0), 1008}}},
        {frequency, {{440, key(Key_Up), 466}, {440, key(Key_Up, alt), 445}, {440, key(Key_Home), 440}}},
        {frequency, {{20, key(Key_Up, alt), 21}}},
    };
    for (std::size_t row = 0; const auto& [make, list] : cases) {
        for (const Case& c : list) {
            Owned owned(make(), c.start);
            c.act(owned.control);
            EXPECT_FLOAT_EQ(owned.control.value(), c.end) << "row " << row << " from " << c.start;
        }
        ++row;
    }
}

TEST(NumberTest, TheWheelTurnsOnlyTheControlThatHasTheFocus) {
    Owned owned(threshold(), 0);
    EXPECT_FALSE(Hand::wheel(owned.control, {0, 120})) << "the pointer may only pass over it";
    EXPECT_EQ(owned.control.value(), 0);
    Hand::showActive(owned.control);
    owned.control.setFocus();
    const std::pair<QPoint, double> turns[] = {{{0, 60}, 0}, {{0, 60}, 0.5}, {{-360, 0}, -1}};
    for (const auto& [turn, end] : turns) {
        EXPECT_TRUE(Hand::wheel(owned.control, turn));
        EXPECT_EQ(owned.control.value(), end);
    }
}

TEST(NumberTest, ProposalsEndWithinTheRangeAndOnTheStepAndAreReportedOnce) {
    const struct {
        Kit::Range range;
        double step, candidate, end;
    } cases[] = {{{0, 1}, 0.4, 9, 0.8},   {{0.5, 3}, 0.4, 0, 0.8}, {{0.3, 50}, 0.01, 0.1, 0.3},
                 {{0, 0.3}, 0.1, 9, 0.3}, {{-1, 1}, 0.5, -0.1, 0}, {{0, 1}, 0, std::nan(""), 0.7}};
    for (const auto& c : cases) {
        Owned owned(knob(c.range, c.step), 0.7);
        owned.control.propose(c.candidate);
        owned.control.propose(c.candidate);
        const double end = owned.control.value();
        EXPECT_FLOAT_EQ(end, c.end) << c.candidate << " in steps of " << c.step;
        EXPECT_FALSE(std::signbit(end)) << "a zero would be read out as -0.0";
        EXPECT_LE(owned.reports, 1) << c.candidate;
    }
}

// A board may report any number.
TEST(NumberTest, AValueThatIsNoNumberStandsAtTheDefaultAndCanBeMoved) {
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        Owned still(threshold(), 5);
        Owned owned(threshold(), value);
        EXPECT_EQ(owned.control.valueText(), "—");
        EXPECT_NE(Hand::picture(owned.control), Hand::picture(still.control)) << "the read-out";
        QTest::keyClick(&owned.control, Qt::Key_Up);
        EXPECT_EQ(owned.control.value(), 5.5);
        owned.control.setValue(value);
        Hand::drag(owned.control, {0, -11});
        EXPECT_FLOAT_EQ(owned.control.value(), 7);
        Owned typed(gain(), value);
        QTest::keyClick(&typed.control, Qt::Key_Up);
        EXPECT_FLOAT_EQ(typed.control.value(), -11.9);
    }
}

TEST(TimeKnobTest, WalksThroughTheTableOfTimesFromTheNearestOne) {
    std::uint32_t time = 0;
    const std::unique_ptr<Kit::TimeKnob> knob(Kit::timeKnob(
        "Attack", 725, 96, [&time](std::uint32_t ms) { time = ms; }, nullptr));
    QTest::keyClick(knob.get(), Qt::Key_Down);
    EXPECT_EQ(time, 668U);
}

TEST(ScrubFieldTest, ReadsTheNumberInATypedText) {
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"2,5k", 2500}, {" 3K ", 3000}, {"-3,5 dB", -3.5}, {"2.5 kHz", 2500}, {"\u22123 ms", -3},
        {"1.000", 1},   {".5", 0.5},    {"1e5", 15},       {"", {}},          {"-", {}},
        {"1.2.3", {}},  {"k", {}},      {"--3", {}},       {"5-", {}}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(Kit::NumberEditor::parse(text), number) << text;
}

/// A window with a table of two fields; what the fields report.
struct Form {
    QWidget window;
    ScrubField frequency{"FREQ", {20, 22000}, Formats::formatHz, {.step = 1, .logarithmic = true}, &window};
    const Kit::LampSwitch between{"ON", &window};
    ScrubField gain{"GANHO", {-12, 12}, Formats::signedDecibels, {.step = 0.1}, &window};
    std::vector<float> reports;

    Form() {
        window.resize(300, 200);
        gain.move(0, 100);
        frequency.setValue(1000.4), gain.setValue(-3.5);
        for (ScrubField* const field : {&frequency, &gain})
            field->onChange = [this](double next) { reports.push_back(static_cast<float>(next)); };
        Hand::showActive(window);
        frequency.setFocus();
    }

    static QWidget& focused() { return *QApplication::focusWidget(); }
    static QString selected() { return dynamic_cast<QLineEdit&>(focused()).selectedText(); }
    static void type(const char* text) { QTest::keyClicks(&focused(), text); }
};

TEST(ScrubFieldTest, ReturnAndClosingCommitWhatIsTypedAndEscapeDoesNot) {
    const auto key = [](Qt::Key key) { return [key](Form&) { QTest::keyClick(&Form::focused(), key); }; };
    const auto openMenu = [](Form&) {
        QFocusEvent event(QEvent::FocusOut, Qt::PopupFocusReason);
        QApplication::sendEvent(&Form::focused(), &event);
    };
    const struct {
        const char* text;
        std::function<void(Form&)> leave;
        std::vector<float> reports;
        bool editing = false;
    } cases[] = {{"2,5k", key(Qt::Key_Return), {2500}},
                 {"2,5k", [](Form& form) { form.window.close(); }, {2500}},
                 {"2,5k", key(Qt::Key_Escape), {}},
                 {"2,5k", [](Form& form) { form.window.setEnabled(false); }, {}},
                 {"2,5k", openMenu, {}, true},
                 {"abc", key(Qt::Key_Enter), {}},
                 {"abc", key(Qt::Key_Tab), {}}};
    for (const auto& c : cases) {
        Form form;
        QTest::mouseDClick(&form.frequency, Qt::LeftButton);
        Form::type(c.text);
        c.leave(form);
        EXPECT_EQ(form.frequency.isEditing(), c.editing) << c.text;
        EXPECT_EQ(form.reports, c.reports) << c.text;
    }
}

TEST(ScrubFieldTest, ATableIsTypedWithoutTheMouse) {
    Form form;
    QTest::mouseDClick(&form.frequency, Qt::RightButton);
    EXPECT_FALSE(form.frequency.isEditing());
    QTest::keyClick(&form.frequency, Qt::Key_F2);
    EXPECT_EQ(Form::selected(), "1000");
    QTest::keyClick(&Form::focused(), Qt::Key_Escape);
    EXPECT_TRUE(form.frequency.hasFocus()) << "the keyboard stays where it was";
    Form::type("a2"), Form::type("500");
    EXPECT_TRUE(OnScreen::shows(form.window, "= 2500 Hz"));
    QTest::keyClick(&Form::focused(), Qt::Key_Tab);
    EXPECT_EQ(Form::selected(), "-3.5");
    Form::type("-3,07");
    EXPECT_FALSE(Hand::shows(OnScreen::find<QWidget>(form.window, "= -3.1 dB"), Theme::accent));
    QTest::keyClick(&Form::focused(), Qt::Key_Backtab);
    Form::type("1.000");
    EXPECT_TRUE(Hand::shows(OnScreen::find<QWidget>(form.window, "= 20 Hz"), Theme::accent)) << "limited";
    Form::type("0");
    QTest::mouseClick(&form.window, Qt::LeftButton, {}, {200, 100});
    EXPECT_FALSE(form.frequency.isEditing());
    EXPECT_EQ(form.reports, (std::vector{2500.0F, -3.1F, 20.0F}));
}

TEST(KnobTest, ATagRepeatsTheValueWhileItIsHoveredOrTurned) {
    QWidget window;
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {62}, &window);
    knob.onChange = [&knob](double next) { knob.setValue(next); };
    Hand::showActive(window);
    Hand::enter(knob);
    EXPECT_TRUE(OnScreen::shows(window, "+0.0 dB"));
    Hand::leave(knob);
    EXPECT_FALSE(OnScreen::shows(window, "+0.0 dB"));
    Hand::drag(knob, {0, -22});
    EXPECT_FALSE(OnScreen::shows(window, "+2.5 dB"));
    QTest::keyClick(&knob, Qt::Key_Up);
    EXPECT_TRUE(OnScreen::shows(window, "+3.0 dB"));
}

TEST(FormatsTest, KeepTheirDecimalPointInBrazil) {
    using namespace Formats;
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));
    const std::pair<QString, const char*> cases[] = {
        {decibels(-0.04), "0.0 dB"}, {ratio(4.26), "4.3 : 1"},   {delay(2.5), "2.50 ms"},
        {time(999), "999 ms"},       {time(1000), "1.00 s"},     {formatHz(999.6), "1000 Hz"},
        {formatHz(1000), "1.00k"},   {formatHz(9999), "10.00k"}, {formatHz(12500), "12.5k"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(text, expected);
    QLocale::setDefault(before);
}

}  // namespace
