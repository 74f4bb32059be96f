#include "tests/ui/pages/desk.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/kit/wellmenu.hpp"
#include "ui/pages/shell/logotitle.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

bool reads(Desk& desk, const QString& text) { return desk.shows<Kit::Caption>(text); }

}  // namespace

TEST(ContentViewTest, GuidesFromOfflineToOnlineAndBack) {
    Desk desk(chainOf(2));
    EXPECT_TRUE(reads(desk, "Conecte às caixas"));
    EXPECT_TRUE(reads(desk, "Desconectado"));
    EXPECT_FALSE(desk.find("Mudo da entrada").isEnabled());

    QTest::mouseClick(&desk.find("CONECTAR"), Qt::LeftButton);
    ASSERT_TRUE(desk.until([&] { return desk.model->progress.value().value_or(0) > 0.4; }));
    EXPECT_TRUE(reads(desk, "Conectando às caixas…"));
    EXPECT_TRUE(reads(desk, "Lendo a caixa 01…"));
    EXPECT_TRUE(reads(desk, "40%") || reads(desk, "41%"));
    EXPECT_TRUE(desk.lit("DESCONECTAR"));
    EXPECT_FALSE(desk.shows("CONECTAR"));
    EXPECT_FALSE(desk.find("Procurar e renumerar as caixas").isEnabled());

    ASSERT_TRUE(desk.until([&] { return desk.model->status.value().isOnline(); }));
    EXPECT_FALSE(reads(desk, "Conectando às caixas…"));
    EXPECT_TRUE(reads(desk, "/dev/ttyUSB0"));
    EXPECT_TRUE(desk.find("Mudo da entrada").isEnabled());
    EXPECT_TRUE(desk.find("Procurar e renumerar as caixas").isEnabled());

    desk.click("DESCONECTAR");
    EXPECT_TRUE(reads(desk, "Conecte às caixas"));
    EXPECT_EQ(desk.line->summary().faults, std::vector<std::string>{});
}

TEST(ContentViewTest, ALostLinkShowsWhyAndKeepsTheValues) {
    Desk desk;
    desk.connectByHand();
    desk.dragUp("Graves", 46);
    desk.cable.lock()->cut(std::make_exception_ptr(TransportError::open("/dev/ttyUSB0", EIO)));
    desk.settle();
    EXPECT_TRUE(reads(desk, "Não foi possível abrir /dev/ttyUSB0: Input/output error"));
    EXPECT_EQ(desk.readOut("Graves"), "+5.0 dB");
    EXPECT_TRUE(desk.shows("CONECTAR"));

    // The page takes neither the mouse nor keys while it is dimmed.
    auto& knob = desk.find<Kit::ValueControl>("Graves");
    QTest::keyClick(&knob, Qt::Key_Up);
    QWidget* const above = desk.view.childAt(knob.mapTo(&desk.view, knob.rect().center()));
    EXPECT_FALSE(above == &knob || knob.isAncestorOf(above));
    EXPECT_EQ(desk.value("Graves"), 5);

    desk.connectByHand();
    EXPECT_EQ(desk.readOut("Graves"), "+5.0 dB");
}

TEST(ContentViewTest, OffersThePortsAndTheBridge) {
    Desk desk;
    auto& menu = desk.find<Kit::MenuButton>("Porta");
    EXPECT_EQ(menu.valueText(), "ttyUSB0");
    EXPECT_FALSE(desk.shows<Kit::TextField>("endereço"));
    QTest::keyClick(&menu, Qt::Key_Down);
    EXPECT_EQ(menu.valueText(), "Controle Wi-Fi (ESP32)");
    EXPECT_EQ(desk.model->portChoice.value(), "esp");
    auto& host = desk.find<Kit::TextField>("endereço");
    EXPECT_EQ(host.text(), "192.168.4.1");
    host.selectAll();
    QTest::keyClicks(&host, "10.0.0.7");
    EXPECT_EQ(desk.model->espHost.value(), "10.0.0.7");
    QTest::keyClick(&menu, Qt::Key_Up);
    EXPECT_FALSE(desk.shows<Kit::TextField>("endereço"));
}

TEST(ContentViewTest, ChipsChooseTheSpeaker) {
    Desk desk(chainOf(3));
    desk.connectByHand();
    const QString model = QString::fromStdString(desk.speaker(1)->info.value().model);
    const QString second = "02 · " + model;
    EXPECT_FALSE(desk.lit(second));
    desk.click(second);
    desk.click(second);
    EXPECT_EQ(desk.model->target.value(), 2);
    EXPECT_TRUE(desk.lit(second));
    EXPECT_FALSE(desk.lit("01 · " + model));
    desk.dragUp("Agudos", 46);
    EXPECT_EQ(desk.held<PeqValue>(1, ModuleKind::peq, "In1", 3).gain, 5);
    EXPECT_EQ(desk.held<PeqValue>(0, ModuleKind::peq, "In1", 3).gain, 0);
    // The other speaker's values show when it is chosen.
    desk.click("01 · " + model);
    EXPECT_EQ(desk.value("Agudos"), 0);
}

TEST(ContentViewTest, ALongChainFitsBesideTheTabs) {
    Desk desk(chainOf(16));
    desk.view.resize(ContentView::smallest);
    desk.connectByHand();
    for (const bool technical : {false, true}) {
        desk.model->technical = technical;
        QApplication::processEvents();
        EXPECT_EQ(desk.view.size(), ContentView::smallest);
        auto& last = desk.find<Kit::Button>(technical ? "OUT 4" : "DELAY");
        const QRect tab(last.mapTo(&desk.view, QPoint()), last.size());
        EXPECT_LE(tab.right(), desk.view.width() - 32);
        EXPECT_TRUE(desk.view.childAt(tab.center()) == &last);
    }
}

TEST(ContentViewTest, AClickClearsTheNotice) {
    Desk desk;
    desk.connectByHand();
    const QString text = "A caixa 01 não confirmou o ajuste";
    desk.model->notice = text.toStdString();
    desk.click(text);
    EXPECT_EQ(desk.model->notice.value(), std::nullopt);
    EXPECT_FALSE(desk.shows(text));
}

TEST(ContentViewTest, AltAndControlClickEntersTechnicalMode) {
    Desk desk;
    auto& logo = desk.find<LogoTitle>("CORVANE");
    for (const auto& [modifiers, technical] : std::initializer_list<std::pair<Qt::KeyboardModifiers, bool>>{
             {{}, false},
             {Qt::AltModifier, false},
             {Qt::ControlModifier, false},
             {Qt::AltModifier | Qt::ControlModifier, true}}) {
        QTest::mouseClick(&logo, Qt::LeftButton, modifiers);
        EXPECT_EQ(desk.model->technical.value(), technical);
    }
    desk.click("X-OVER");
    EXPECT_EQ(desk.view.techPage.value().title(), "X-OVER");
    desk.click("MODO TÉCNICO");
    EXPECT_TRUE(desk.shows("DINÂMICA"));
    desk.model->technical = true;
    EXPECT_TRUE(desk.lit("X-OVER"));
}
