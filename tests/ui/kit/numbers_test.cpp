#include "tests/ui/kit/hand.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <memory>

namespace {

using Kit::ScrubField;
using Number = std::unique_ptr<Kit::ValueControl>;

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
Number continuous() { return knob({0, 1}, 0); }
Number volume() { return fader({-60, 6}); }
Number delay() { return fader({0, 5}); }
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

    void choose() {
        Hand::showActive(control);
        control.setFocus();
    }
};

constexpr bool fine = true;

TEST(NumberTest, ADragChangesTheValueByItsDistance) {
    struct Drag {
        double start, right, down, end;
        bool isFine = false;
    };
    const std::pair<Number (*)(), std::vector<Drag>> cases[] = {
        {threshold, {{-20, 40, -110, 1}, {22, 0, 900, -20}, {0, 0, -1, 0}, {-20, 0, -110, -16, fine}}},
        {volume, {{6, 0, 200, -60}, {0, 0, 1, -0.3}, {6, 0, 100, -27, fine}}},
        {gain, {{0, 4, 0, 0.1}, {0, 0, -4, 0.1}, {0, 20, 20, 0}, {0, 100, 0, 0.5, fine}}},
        {frequency,
         {{1000, 1.4, 0, 1000}, {1000, 2, 0, 1016}, {1000, 0, 90, 500}, {1000, 90, 0, 1149, fine}}},
    };
    for (const auto& [make, drags] : cases)
        for (const Drag& d : drags)
            for (const auto modifier : {Qt::AltModifier, Qt::ShiftModifier}) {
                Owned owned(make(), d.start);
                Hand::drag(owned.control, {d.right, d.down}, d.isFine ? modifier : Qt::NoModifier);
                EXPECT_FLOAT_EQ(owned.control.value(), d.end) << d.right << ' ' << d.down;
            }
    const std::tuple<Number (*)(), double, QPointF, double> returns[] = {
        {threshold, 20, {0, 20}, 16}, {volume, 6, {0, 10}, 2.7}, {frequency, 1000, {1, 0}, 1008}};
    for (const auto& [make, start, back, end] : returns) {
        Owned owned(make(), start);
        Hand::pull(owned.control, {{9000, -9000}, back});
        EXPECT_FLOAT_EQ(owned.control.value(), end) << "back from beyond the end of the range";
    }
}

TEST(NumberTest, KeysWheelAndDoubleClickChangeTheValueBySteps) {
    using enum Qt::Key;
    struct Press {
        double start;
        int key;
        double end;
        bool isFine = false;
    };
    const std::pair<Number (*)(), std::vector<Press>> cases[] = {
        {threshold, {{0, Key_Up, 0.5}, {0, Key_Right, 0.5}, {0, Key_Down, -0.5}, {0, Key_Left, -0.5}}},
        {threshold, {{0, Key_PageUp, 5}, {0, Key_PageDown, -5}, {0, Key_Home, 5}, {0, Key_Up, 0.5, fine}}},
        {continuous, {{0.5, Key_Up, 0.525}, {0.5, Key_Down, 0.495, fine}}},
        {volume, {{0, Key_Down, -0.5}, {0, Key_Up, 0.1, fine}}},
        {delay, {{0, Key_Up, 0.1}}},
        {gain, {{0, Key_PageUp, 1}}},
        {frequency,
         {{440, Key_Up, 466}, {440, Key_Up, 445, fine}, {20, Key_Up, 21, fine}, {440, Key_Home, 440}}},
    };
    for (const auto& [make, presses] : cases)
        for (const Press& p : presses) {
            Owned owned(make(), p.start);
            QTest::keyClick(&owned.control, Qt::Key(p.key), p.isFine ? Qt::AltModifier : Qt::NoModifier);
            EXPECT_FLOAT_EQ(owned.control.value(), p.end) << p.key << " at " << p.start;
        }
    Owned owned(threshold(), 0);
    EXPECT_FALSE(Hand::wheel(owned.control, {0, 120})) << "the pointer may only pass over it";
    EXPECT_EQ(owned.control.value(), 0);
    owned.choose();
    const std::pair<QPoint, double> turns[] = {{{0, 60}, 0}, {{0, 60}, 0.5}, {{-360, 0}, -1}};
    for (const auto& [turn, end] : turns) {
        EXPECT_TRUE(Hand::wheel(owned.control, turn));
        EXPECT_EQ(owned.control.value(), end);
    }
    for (const auto& [button, end] : {std::pair(Qt::RightButton, -1), {Qt::LeftButton, 5}}) {
        QTest::mouseDClick(&owned.control, button);
        EXPECT_EQ(owned.control.value(), end);
    }
}

TEST(NumberTest, ProposalsEndWithinTheRangeAndOnTheStepAndAreReportedOnce) {
    const struct {
        Kit::Range range;
        double step, candidate, end;
    } cases[] = {{{0, 1}, 0.4, 9, 0.8},          {{0.5, 3}, 0.4, 0, 0.8}, {{0.3, 50}, 0.01, 0.1, 0.3},
                 {{0, 0.3}, 0.1, 9, 0.3},        {{0, 1}, 0, 9, 1},       {{-1, 1}, 0.5, -0.1, 0},
                 {{0, 1}, 0, std::nan(""), 0.7}, {{1, 20}, 0.1, 1.2, 1.2}};
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

TEST(NumberTest, ADragEndsWhenItsControlIsDisabledOrHidden) {
    for (const bool hide : {false, true}) {
        Owned owned(threshold(), 0);
        Hand::pull(owned.control, {{0, -11}});
        hide ? owned.control.hide() : owned.control.setEnabled(false);
        owned.control.propose(hide ? 2 : 10);
        owned.control.setEnabled(true), owned.control.show();
        Hand::mouse(owned.control, QEvent::MouseMove, {0, -100});
        QTest::mousePress(&owned.control, Qt::RightButton);
        Hand::mouse(owned.control, QEvent::MouseMove, {0, -100});
        EXPECT_EQ(owned.control.value(), 2);
    }
}

TEST(TimeKnobTest, WalksThroughTheTableOfTimesAndSpeaksMilliseconds) {
    std::uint32_t time = 0;
    const std::unique_ptr<Kit::TimeKnob> knob(Kit::timeKnob(
        "Attack", 724, 96, [&time](std::uint32_t ms) { time = ms; }, nullptr));
    EXPECT_EQ(knob->valueText(), "724 ms");
    const auto after = [&](std::uint32_t start, const auto& gesture) {
        knob->setTime(start);
        gesture();
        return time;
    };
    Hand::showActive(*knob);
    knob->setFocus();
    EXPECT_EQ(after(724, [&] { Hand::wheel(*knob, {0, 120}); }), 790U);
    EXPECT_EQ(after(725, [&] { QTest::keyClick(knob.get(), Qt::Key_Down); }), 668U);
    EXPECT_EQ(after(1448, [&] { QTest::mouseDClick(knob.get(), Qt::LeftButton); }), 45U);
    EXPECT_EQ(after(1, [&] { Hand::drag(*knob, {0, -22}); }), 19U);
    EXPECT_EQ(after(800, [&] { Hand::drag(*knob, {0, -500}); }), 2895U);
    EXPECT_EQ(after(800, [&] { Hand::drag(*knob, {0, 500}); }), 1U);
}

TEST(ScrubFieldTest, ReadsTheNumberInATypedText) {
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"2,5k", 2500},    {"2.5K", 2500},     {" 3k ", 3000}, {"-3,5 dB", -3.5}, {"120 Hz", 120},
        {"2.5 kHz", 2500}, {"\u22123 ms", -3}, {"1.000", 1},   {"Hz", {}},        {".5", 0.5},
        {"1e5", 15},       {"abc", {}},        {"", {}},       {"-", {}},         {"1.2.3", {}},
        {"k", {}},         {"--3", {}},        {"5-", {}}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(ScrubField::parse(text), number) << text;
}

/// A window with a field that is being edited.
struct Form {
    QWidget window;
    ScrubField field;
    QLineEdit elsewhere{&window};
    QLineEdit& editor = *field.findChild<QLineEdit*>();
    std::vector<double> reports;

    Form(double value, Kit::Range range, const ScrubField::Look& look, Qt::Key key)
        : field("Campo", range, Formats::formatHz, look, &window) {
        field.setValue(value);
        field.onChange = [this](double next) { reports.push_back(next); };
        Hand::showActive(window);
        key ? QTest::keyClick(&field, key) : QTest::mouseDClick(&field, Qt::LeftButton);
    }
};

TEST(ScrubFieldTest, ReturnAndLeavingCommitWhatIsTypedAndEscapeDoesNot) {
    const auto key = [](Qt::Key name) { return [name](Form& form) { QTest::keyClick(&form.editor, name); }; };
    const auto click = [](Form& form) { form.elsewhere.setFocus(Qt::MouseFocusReason); };
    const auto close = [](Form& form) { form.window.close(); };
    const auto disable = [](Form& form) { form.window.setEnabled(false); };
    const auto openMenu = [](Form& form) {
        QFocusEvent event(QEvent::FocusOut, Qt::PopupFocusReason);
        QApplication::sendEvent(&form.editor, &event);
    };
    const struct {
        const char* text;
        std::function<void(Form&)> leave;
        std::vector<double> reports;
        bool editing = false;
    } cases[] = {{"2,5k", key(Qt::Key_Return), {2500}},
                 {"2,5k", key(Qt::Key_Tab), {2500}},
                 {"2,5k", click, {2500}},
                 {"2,5k", close, {2500}},
                 {"2,5k", key(Qt::Key_Escape), {}},
                 {"2,5k", disable, {}},
                 {"2,5k", openMenu, {}, true},
                 {"50k", key(Qt::Key_Enter), {22000}},
                 {"99.6", key(Qt::Key_Return), {100}},
                 {"1000", key(Qt::Key_Return), {}},
                 {"abc", key(Qt::Key_Return), {}},
                 {"abc", key(Qt::Key_Tab), {}}};
    for (const auto& c : cases) {
        Form form(1000, {20, 22000}, {.step = 1, .logarithmic = true}, {});
        QTest::keyClicks(&form.editor, c.text);
        c.leave(form);
        EXPECT_EQ(form.field.isEditing(), c.editing) << c.text;
        EXPECT_EQ(form.reports, c.reports) << c.text;
    }
}

TEST(ScrubFieldTest, EditingStartsWithTheWholeValueSelected) {
    Form frequency(1234.4, {20, 22000}, {.step = 1, .logarithmic = true}, Qt::Key_F2);
    EXPECT_EQ(frequency.editor.selectedText(), "1234");
    QTest::keyClick(&frequency.editor, Qt::Key_Escape);
    EXPECT_TRUE(frequency.field.hasFocus()) << "the keyboard stays where it was";
    QTest::mouseDClick(&frequency.field, Qt::RightButton);
    EXPECT_FALSE(frequency.field.isEditing());
    EXPECT_EQ(Form(-3.5, {-12, 12}, {.step = 0.1}, Qt::Key_Return).editor.selectedText(), "-3.5");
}

/// The tag that is on the screen; null if there is none.
QWidget* tagIn(QWidget& window, const QString& text) {
    for (QWidget* const each : window.findChildren<QWidget*>())
        if (each->isVisible() && each->testAttribute(Qt::WA_TransparentForMouseEvents) &&
            each->accessibleName() == text)
            return each;
    return nullptr;
}

TEST(ScrubFieldTest, ATypedTableIsEnteredWithoutTheMouse) {
    QWidget window;
    window.resize(300, 200);
    ScrubField frequency("FREQ", {20, 22000}, Formats::formatHz, {.step = 1, .logarithmic = true}, &window);
    const Kit::LampSwitch between("ON", &window);
    ScrubField gain("GANHO", {-12, 12}, Formats::signedDecibels, {.step = 0.1}, &window);
    std::vector<double> reports;
    for (ScrubField* const field : {&frequency, &gain})
        field->onChange = [&reports](double next) { reports.push_back(next); };
    gain.move(0, 100);
    Hand::showActive(window);
    frequency.setFocus();
    QTest::keyClicks(&frequency, "a2");
    QTest::keyClicks(QApplication::focusWidget(), "500");
    EXPECT_TRUE(tagIn(window, "= 2500 Hz"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(gain.isEditing());
    QTest::keyClicks(QApplication::focusWidget(), "-3,07");
    EXPECT_TRUE(tagIn(window, "= -3.1 dB"));
    EXPECT_FALSE(Hand::shows(*tagIn(window, "= -3.1 dB"), Theme::accent));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QTest::keyClicks(QApplication::focusWidget(), "1.000");
    EXPECT_TRUE(Hand::shows(*tagIn(window, "= 20 Hz"), Theme::accent)) << "limited";
    QTest::keyClicks(QApplication::focusWidget(), "0");
    QTest::mouseClick(&window, Qt::LeftButton, {}, {200, 100});
    EXPECT_FALSE(frequency.isEditing());
    QTest::mouseClick(&window, Qt::LeftButton, {}, {200, 100});
    ASSERT_EQ(reports.size(), 2U) << "20 Hz is what it was";
    EXPECT_EQ(reports.at(0), 2500);
    EXPECT_FLOAT_EQ(static_cast<float>(reports.at(1)), -3.1F);
}

TEST(KnobTest, ATagRepeatsTheValueWhileItIsHoveredOrTurned) {
    QWidget window;
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {62}, &window);
    knob.onChange = [&knob](double next) { knob.setValue(next); };
    Hand::showActive(window);
    QEnterEvent enter({}, {}, {});
    QApplication::sendEvent(&knob, &enter);
    EXPECT_TRUE(tagIn(window, "+0.0 dB"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&knob, &leave);
    EXPECT_FALSE(tagIn(window, "+0.0 dB"));
    Hand::pull(knob, {{0, -22}});
    EXPECT_TRUE(tagIn(window, "+2.5 dB"));
    Hand::mouse(knob, QEvent::MouseButtonRelease, {});
    EXPECT_FALSE(tagIn(window, "+2.5 dB"));
    QTest::keyClick(&knob, Qt::Key_Up);
    EXPECT_TRUE(tagIn(window, "+3.0 dB"));
}

}  // namespace
