#include "tests/ui/pages/desk.hpp"

#include "ui/kit/spinner.hpp"
#include "ui/pages/shell/reportline.hpp"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QPlainTextEdit>
#include <QVariantAnimation>

using namespace Tests;

namespace {

constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;

/// The animation of the widget, moved to that time.
void moveTo(QWidget& widget, int ms) {
    for (QObject* const each : widget.findChildren<QObject*>())
        if (auto* const animation = qobject_cast<QVariantAnimation*>(each)) animation->setCurrentTime(ms);
}

}  // namespace

TEST(LockTest, ThePageTakesNoInputAndItsMetersLive) {
    Desk desk("TOM", 2);
    auto& knob = desk.find<Kit::ValueControl>("Graves");
    knob.setFocus();
    QTest::keyClick(&knob, Qt::Key_L, control);
    ASSERT_TRUE(desk.shows("Travado"));
    desk.port->sent.clear();
    Sequence<std::vector<float>> meters(desk.model->meters);
    Hand::drag(knob, {0, -40});
    QTest::keyClick(&knob, Qt::Key_Up);
    desk.click("Voz");
    desk.settle();
    EXPECT_EQ(desk.written(), none);
    EXPECT_FALSE(meters.values.empty());

    auto& padlock = desk.find("Travado");
    QTest::mouseClick(&padlock, Qt::LeftButton);
    Hand::mouse(padlock, QEvent::MouseButtonPress, {9, 9});
    moveTo(padlock, 999);
    EXPECT_TRUE(desk.view.locked.value()) << "held for too short a time";
    moveTo(padlock, 1000);
    EXPECT_FALSE(desk.view.locked.value());
    desk.press("Graves", Qt::Key_Up);
    for (const Qt::Key key : {Qt::Key_L, Qt::Key_Z, Qt::Key_L})
        QTest::keyClick(&desk.view, key, control);
    EXPECT_EQ(desk.number("Graves"), 0.5) << "nothing is undone either";
    EXPECT_FALSE(desk.view.locked.value());
}

TEST(WorkTest, EndsWithItsPageModeLinkOrSpeaker) {
    const std::pair<const char*, std::function<void(Desk&)>> changes[] = {
        {"page", [](Desk& desk) { desk.view.techPage = TechPage{}; }},
        {"mode", [](Desk& desk) { desk.model->technical = false; }},
        {"link", [](Desk& desk) { desk.cable.lock()->cut(nullptr), desk.settle(); }},
        {"speaker", [](Desk& desk) { desk.find(desk.chip(1)).activate(); }}};
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        for (const bool typing : {true, false}) {
            Desk desk("IN 1", 2);
            desk.model->target = desk.speaker(1)->address;
            const auto held = [&](std::size_t position) {
                return desk.shown(position, K7Q::index(ModuleKind::peq, "In0", 0)).as<PeqValue>()->gain;
            };
            auto& gain = desk.find<Kit::ValueControl>("Banda 1, ganho");
            gain.setFocus();
            if (typing) QTest::keyClicks(&gain, "2");
            if (!typing) Hand::pull(gain, {{80, 0}}), desk.find("Banda 1, tipo").activate();
            EXPECT_EQ(QApplication::activePopupWidget() != nullptr, !typing);
            change(desk);
            EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
            Hand::mouse(gain, QEvent::MouseMove, {200, 0});
            EXPECT_EQ(held(1), 2) << "what was typed or dragged to until then";
            EXPECT_EQ(held(0), 0);
        }
    }
}

TEST(UndoTest, AGestureIsOneStepAndSaysWhatItHasUndone) {
    Desk desk("TOM", 2);
    auto& bass = desk.find<Kit::ValueControl>("Graves");
    const double loud = desk.number("Entrada");
    Hand::drag(bass, {0, -30});
    const double first = bass.value();
    Hand::pull(bass, {{0, -10}, {0, -20}, {0, -40}});
    Hand::mouse(bass, QEvent::MouseButtonRelease, {9, 9});
    const double second = bass.value();
    desk.click("Voz");
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&desk.find<Kit::Control>("Entrada"), Qt::Key_Down);
    desk.press(desk.view, Qt::Key_Z, control);
    EXPECT_EQ(desk.number("Entrada"), loud) << "key presses on one control";
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, double> steps[] = {
        {Qt::Key_Z, control, second}, {Qt::Key_Z, control, first},
        {Qt::Key_Y, control, second}, {Qt::Key_Z, control, first},
        {Qt::Key_Z, control, 0},      {Qt::Key_Z, control | Qt::ShiftModifier, first}};
    for (const auto& [key, modifiers, value] : steps) {
        desk.press(desk.view, key, modifiers);
        EXPECT_EQ(bass.value(), value) << key;
    }
    const QString said = "Refeito: PEQ, 2 canais, 2 caixas";
    EXPECT_EQ(desk.model->report.value().text, said.toStdString());
    auto& line = *desk.all<ReportLine>().at(0);
    EXPECT_NE(desk.view.childAt(line.geometry().center()), &line) << "takes no input";
    moveTo(line, 2000);
    EXPECT_TRUE(line.isVisible());
    moveTo(line, 2250);
    EXPECT_FALSE(line.isVisible());
}

TEST(DiagnosticsTest, ShowsAndCopiesWhatHasHappened) {
    Desk desk("TOM", 2);
    desk.model->warn("A caixa 02 parou de responder");
    desk.set(ModuleKind::gain, "Out0", 0, gain(-3));
    desk.settle();
    QTest::keyClick(&desk.view, Qt::Key_D, control | Qt::ShiftModifier);
    QWidget& window = *desk.view.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly).last();
    ASSERT_EQ(window.windowTitle(), "Diagnóstico");
    const auto text = [&](const char* part) {
        return OnScreen::find<QPlainTextEdit>(window, part).toPlainText();
    };
    EXPECT_TRUE(text("Eventos").endsWith("A caixa 02 parou de responder"));
    EXPECT_EQ(text("Linha").count('\n'), 3) << "titles, two speakers, damaged bytes";
    EXPECT_TRUE(text("Quadros").contains("ajuste: GANHO, SAÍDA 1: db=-3"));
    QTest::mouseClick(&OnScreen::find<Kit::Button>(window, "Copiar"), Qt::LeftButton);
    for (const QString& part : {text("Eventos"), text("Linha"), text("Quadros").right(30)})
        EXPECT_TRUE(QApplication::clipboard()->text().contains(part)) << part.toStdString();
}
