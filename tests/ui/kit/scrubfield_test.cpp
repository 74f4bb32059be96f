#include "tests/ui/kit/hand.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/scrubfield.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <vector>

namespace {

using Kit::ScrubField;

/// A window with one field, and another widget to go to.
struct Form {
    QWidget window;
    ScrubField field;
    QLineEdit elsewhere;
    std::vector<double> reports;

    Form(double value, Kit::Range range, const ScrubField::Look& look)
        : field("Campo", range, Formats::formatHz, look, &window)
        , elsewhere(&window) {
        window.resize(300, 60);
        elsewhere.setGeometry(100, 20, 100, 20);
        field.setValue(value);
        field.onChange = [this](double next) {
            reports.push_back(next);
            field.setValue(next);
        };
        Hand::showActive(window);
    }

    QLineEdit& editor() { return *field.findChild<QLineEdit*>(); }

    void type(const char* text) {
        QTest::mouseDClick(&field, Qt::LeftButton);
        QTest::keyClicks(&editor(), text);
    }
};

struct Frequency : Form {
    explicit Frequency(double value = 1000)
        : Form(value, {20, 22000}, {.step = 1, .logarithmic = true, .width = 72}) {}
};

struct Gain : Form {
    explicit Gain(double value = 0)
        : Form(value, {-12, 12}, {.step = 0.1, .logarithmic = false, .width = 64}) {}
};

TEST(ScrubFieldTest, ReadsWhatPeopleType) {
    const struct {
        const char* text;
        std::optional<double> number;
    } cases[] = {
        {"2,5k", 2500},        {"2.5K", 2500},          {" 3k ", 3000},
        {"-3,5 dB", -3.5},     {"120 Hz", 120},         {".5", 0.5},
        {"1e5", 15},           {"abc", std::nullopt},   {"", std::nullopt},
        {"-", std::nullopt},   {"1.2.3", std::nullopt}, {"k", std::nullopt},
        {"--3", std::nullopt}, {"5-", std::nullopt},    {"inf", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ScrubField::parse(c.text), c.number) << c.text;
}

TEST(ScrubFieldTest, DragsRightAndUpIncrease) {
    const struct {
        QPointF by;
        Qt::KeyboardModifiers modifiers;
        double gain, frequency;
    } cases[] = {
        {{4, 0}, {}, 0.1, 1031},
        {{0, -4}, {}, 0.1, 1031},
        {{20, 20}, {}, 0, 1000},
        {{90, 0}, {}, 2.3, 2000},
        {{0, 90}, {}, -2.3, 500},
        {{90, 0}, Qt::AltModifier, 0.5, 1149},
        {{90, 0}, Qt::ShiftModifier, 0.5, 1149},
        {{1, 1}, {}, 0, 1000},
        {{9000, 0}, {}, 12, 22000},
        {{-9000, 0}, {}, -12, 20},
    };
    for (const auto& c : cases) {
        Gain gain;
        Hand::drag(gain.field, c.by, c.modifiers);
        EXPECT_NEAR(gain.field.value(), c.gain, 1e-9) << c.by.x() << ' ' << c.by.y();
        Frequency frequency;
        Hand::drag(frequency.field, c.by, c.modifiers);
        EXPECT_EQ(frequency.field.value(), c.frequency) << c.by.x() << ' ' << c.by.y();
    }
    Frequency still;
    Hand::drag(still.field, {1.4, 0});
    EXPECT_TRUE(still.reports.empty()) << "less than two points is no drag";
}

TEST(ScrubFieldTest, TypingIsTakenOverByReturnAndByLeaving) {
    const auto byReturn = [](Form& form) { QTest::keyClick(&form.editor(), Qt::Key_Return); };
    const auto byTab = [](Form& form) { QTest::keyClick(&form.editor(), Qt::Key_Tab); };
    const auto byClick = [](Form& form) { form.elsewhere.setFocus(Qt::MouseFocusReason); };
    const auto byClosing = [](Form& form) { form.window.close(); };
    const auto byEscape = [](Form& form) { QTest::keyClick(&form.editor(), Qt::Key_Escape); };
    const struct {
        const char* text;
        void (*leave)(Form&);
        std::vector<double> reports;
    } cases[] = {
        {"2,5k", byReturn, {2500}},  {"2,5k", byTab, {2500}},   {"2,5k", byClick, {2500}},
        {"2,5k", byClosing, {2500}}, {"2,5k", byEscape, {}},    {"50k", byReturn, {22000}},
        {"3", byReturn, {20}},       {"99.6", byReturn, {100}}, {"1000", byReturn, {}},
        {"abc", byReturn, {}},       {"abc", byTab, {}},
    };
    for (const auto& c : cases) {
        Frequency frequency;
        frequency.type(c.text);
        EXPECT_TRUE(frequency.field.isEditing());
        c.leave(frequency);
        EXPECT_FALSE(frequency.field.isEditing()) << c.text;
        EXPECT_EQ(frequency.reports, c.reports) << c.text;
    }
}

TEST(ScrubFieldTest, TypingBeginsWithTheValue) {
    Frequency frequency(1234.4);
    QTest::keyClick(&frequency.field, Qt::Key_F2);
    EXPECT_EQ(frequency.editor().text(), "1234");
    QTest::keyClick(&frequency.editor(), Qt::Key_Escape);
    EXPECT_TRUE(frequency.field.hasFocus()) << "the keyboard stays where it was";
    Gain gain(-3.5);
    QTest::keyClick(&gain.field, Qt::Key_Return);
    EXPECT_EQ(gain.editor().text(), "-3.5");
    EXPECT_EQ(gain.editor().selectedText(), "-3.5");
}

TEST(ScrubFieldTest, NothingIsTakenOverFromADisabledField) {
    Frequency frequency;
    frequency.type("300");
    frequency.window.setEnabled(false);
    EXPECT_FALSE(frequency.field.isEditing());
    EXPECT_TRUE(frequency.reports.empty());
}

TEST(ScrubFieldTest, KeysAndWheelStepMusicallyOnALogarithmicField) {
    Frequency frequency(440);
    Hand::wheel(frequency.field, 120);
    EXPECT_EQ(frequency.field.value(), 466);
    QTest::keyClick(&frequency.field, Qt::Key_Down);
    EXPECT_EQ(frequency.field.value(), 440);
    QTest::keyClick(&frequency.field, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(frequency.field.value(), 445);
    QTest::keyClick(&frequency.field, Qt::Key_Home);
    EXPECT_EQ(frequency.field.value(), 445) << "a field has no default";
    Frequency lowest(20);
    QTest::keyClick(&lowest.field, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(lowest.field.value(), 21) << "a step is never lost in rounding";
    Gain gain(0);
    QTest::keyClick(&gain.field, Qt::Key_PageUp);
    EXPECT_NEAR(gain.field.value(), 1, 1e-9);
}

}  // namespace
