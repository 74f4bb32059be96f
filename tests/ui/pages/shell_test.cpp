#include "tests/ui/pages/desk.hpp"

#include "ui/kit/fader.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/pages/shared/room.hpp"
#include "ui/pages/shell/logotitle.hpp"
#include "ui/pages/shell/mainwindow.hpp"

#include <gtest/gtest.h>

#include <QWindow>

using namespace Tests;

TEST(ShellTest, GuidesFromOfflineToOnlineAndBack) {
    Desk desk;
    EXPECT_TRUE(desk.shows("Conecte às caixas"));
    QTest::mouseClick(desk.all<Kit::Button>().back(), Qt::LeftButton);  // CONECTAR on the card
    ASSERT_TRUE(desk.until([&] { return desk.model->progress.value().value_or(0) > 0.4; }));
    for (const char* const text : {"Conectando às caixas…", "Lendo a caixa 01…", "Leitura das caixas"})
        EXPECT_TRUE(desk.shows(text)) << text;
    EXPECT_TRUE(desk.lit("DESCONECTAR") && !desk.shows("Procurar e renumerar as caixas"));
    ASSERT_TRUE(desk.until([&] { return desk.model->status.value().isOnline(); }));
    EXPECT_FALSE(desk.shows("Conectando às caixas…") || desk.shows("Leitura das caixas"));

    auto& knob = desk.find<Kit::ValueControl>("Graves");
    knob.propose(5);
    desk.cable.lock()->cut(std::make_exception_ptr(TransportError::open("/dev/ttyUSB0", EIO)));
    desk.settle();
    EXPECT_TRUE(desk.shows("Não foi possível abrir /dev/ttyUSB0: Input/output error"));
    QTest::keyClick(&knob, Qt::Key_Up);
    EXPECT_EQ(knob.value(), 5) << "shown, but not to be changed";
    EXPECT_NE(desk.view.childAt(knob.mapTo(&desk.view, knob.rect().center())), &knob);
    desk.goTo("TOM");
    desk.click("DESCONECTAR");
    EXPECT_FALSE(desk.lit("CONECTAR"));
}

TEST(ShellTest, OffersThePortsAndTheBridge) {
    Desk desk;
    EXPECT_EQ(desk.readOut("Porta"), "ttyUSB0");
    desk.model->ports = std::vector<std::string>();
    desk.press("Porta", Qt::Key_Down);
    EXPECT_EQ(desk.readOut("Porta"), "Controle Wi-Fi (ESP32)");
    auto& host = desk.find<Kit::TextField>("endereço");
    QTest::keyClicks(&host, "0");
    EXPECT_EQ(desk.model->espHost.value(), "192.168.4.10");
    desk.click("Atualizar portas");
    desk.press("Porta", Qt::Key_Up);
    EXPECT_EQ(desk.model->portChoice.value(), "/dev/ttyUSB0");
    EXPECT_FALSE(desk.shows("endereço"));
}

TEST(ShellTest, HeaderAndStripAct) {
    Desk desk("TOM", 2);
    EXPECT_FALSE(desk.lit(desk.chip(1)) || desk.lit(desk.chip(2))) << "all speakers are edited";
    desk.click(desk.chip(2)), desk.click(desk.chip(2));
    EXPECT_TRUE(desk.lit(desk.chip(2))) << "a second click keeps the target";
    desk.model->notice = "A caixa 01 parou de responder";
    desk.click("A caixa 01 parou de responder");
    EXPECT_FALSE(desk.shows("A caixa 01 parou de responder"));
    desk.goTo("X-OVER");
    EXPECT_FALSE(desk.shows("DINÂMICA"));
    desk.click("MODO TÉCNICO");
    EXPECT_TRUE(desk.lit("TOM") && !desk.shows("X-OVER") && !desk.shows("MODO TÉCNICO"));
    desk.model->technical = true;
    EXPECT_TRUE(desk.lit("X-OVER"));
    desk.click("Procurar e renumerar as caixas");
    EXPECT_FALSE(desk.sentOf(Fun::netStart).empty());
}

TEST(ShellTest, ALongChainAndEveryPageFitTheSmallestWindows) {
    Desk desk("TOM", 16);
    QStringList titles{"TOM", "DINÂMICA", "DELAY"};
    for (const TechPage& page : TechPage::all)
        titles << page.title();
    desk.view.setMinimumSize(Room::leastOnSmallScreen);
    for (const auto& [size, margin] : {std::pair{Room::least, 24}, {Room::leastOnSmallScreen, 14}}) {
        desk.view.resize(size);
        const QRect room = desk.view.rect().marginsRemoved({32, margin, 32, margin});
        const auto fits = [&](QWidget& widget) {
            const QRect place(widget.mapTo(&desk.view, QPoint()), widget.size());
            return room.contains(place) &&
                   widget.size() == widget.size().expandedTo(widget.minimumSizeHint());
        };
        for (const QString& title : titles) {
            desk.goTo(title);
            EXPECT_TRUE(fits(desk.find(titles.indexOf(title) < 3 ? "DELAY" : "OUT 4")));
            for (QWidget* const panel : desk.all<Kit::Panel>())
                EXPECT_TRUE(fits(*panel)) << qPrintable(title) << ' ' << size.height();
        }
    }
}

TEST(ShellTest, TheContentGrowsAndStaysInTheMiddleOfALargeWindow) {
    Desk desk("DELAY");
    const QSize usual = desk.all<Kit::Panel>().at(0)->size();
    desk.view.resize(2560, 1440);
    const QSize free = (desk.view.size() - Room::most) / 2;
    const auto placeOf = [&](QWidget& widget) {
        return QRect(widget.mapTo(&desk.view, QPoint()), widget.size());
    };
    const QRect panel = placeOf(*desk.all<Kit::Panel>().at(0));
    EXPECT_EQ(panel.size(), usual + Room::most - Room::usual);
    EXPECT_EQ(panel.bottomRight(), QPoint(2560, 1440) - QPoint(free.width() + 33, free.height() + 25));
    EXPECT_EQ(placeOf(*desk.all<LogoTitle>().at(0)).topLeft() + QPoint(LogoTitle::bleed, LogoTitle::bleed),
              QPoint(free.width() + 32, free.height() + 34));
    QWidget& fader = *desk.all<Kit::Fader>().at(0);
    EXPECT_EQ(fader.width(), 100) << "25/16 of its usual width";
    desk.view.resize(Room::usual);
    EXPECT_EQ(fader.width(), 64);
    EXPECT_EQ(desk.all<Kit::Panel>().at(0)->size(), usual);
}

TEST(ShellTest, AClickOnTheLogoWithAltAndControlTogglesTheTechnicalMode) {
    Desk desk;
    auto& logo = desk.find<LogoTitle>("CORVANE");
    constexpr Qt::KeyboardModifiers secret = Qt::AltModifier | Qt::ControlModifier;
    const std::tuple<QEvent::Type, Qt::KeyboardModifiers, QPointF, bool> clicks[] = {
        {QEvent::MouseButtonPress, Qt::AltModifier, {9, 9}, false},
        {QEvent::MouseButtonPress, secret, {-9, 9}, false},
        {QEvent::MouseButtonPress, secret, {9, 9}, true},
        {QEvent::MouseButtonDblClick, secret, {9, 9}, true}};
    for (const auto& [press, keys, end, toggles] : clicks) {
        const bool before = desk.model->technical.value();
        Hand::mouse(logo, press, {9, 9}, keys);
        EXPECT_EQ(desk.model->technical.value(), before);
        Hand::mouse(logo, QEvent::MouseButtonRelease, end, keys);
        EXPECT_EQ(desk.model->technical.value() != before, toggles) << keys;
    }
}

TEST(MainWindowTest, IsMovedZoomedAndClosedByItsOwnMeans) {
    const Rig rig;
    MainWindow window(*rig.model, true);
    Hand::showActive(window);
    window.resize(300, 200);
    EXPECT_EQ(window.content().size(), Room::least);
    auto& logo = OnScreen::find<LogoTitle>(window, "CORVANE");
    const auto click = [&window](const char* name) {
        QTest::mouseClick(&OnScreen::find<Kit::Button>(window, name), Qt::LeftButton);
    };
    const QPoint before = window.pos();
    Hand::drag(logo, {30, 20});
    Hand::mouse(logo, QEvent::MouseMove, {0, 0});
    EXPECT_EQ(window.pos(), before + QPoint(30, 20));
    QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(600, 400));
    QTest::mouseDClick(&logo, Qt::LeftButton);
    EXPECT_FALSE(window.isMaximized());
    QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(600, 40));
    EXPECT_TRUE(window.isMaximized());
    click("Ampliar");
    EXPECT_FALSE(window.isMaximized());
    QMouseEvent atCorner(QEvent::MouseMove, {1238, 2}, {}, Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(window.windowHandle(), &atCorner);
    ASSERT_TRUE(QApplication::overrideCursor());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::SizeBDiagCursor);
    click("Minimizar");
    EXPECT_TRUE(window.isMinimized());
    window.showNormal();
    click("Fechar");
    EXPECT_FALSE(window.isVisible());
}

TEST(MainWindowTest, ShowsLevelsOnlyWhileItIsSeen) {
    Rig rig;
    rig.goOnline();
    MainWindow window(*rig.model, true);
    Hand::showActive(window);
    const auto moves = [&rig] {
        const auto before = rig.model->meters.value();
        rig.time.advance(1s);
        return rig.model->meters.value() != before;
    };
    EXPECT_TRUE(moves());
    window.showMinimized();
    EXPECT_FALSE(moves());
    const auto old = rig.model->meters.value();
    window.showNormal();
    EXPECT_NE(rig.model->meters.value(), old) << "the latest at once";
    EXPECT_TRUE(moves());
    window.hide();
    EXPECT_FALSE(moves());
    rig.run(rig.model->disconnect());
    window.show();
    EXPECT_EQ(rig.model->meters.value(), std::vector<float>(6, AppModel::silence));
}

TEST(MainWindowTest, LetsTheEditsThatWaitGoOutBeforeItCloses) {
    for (const bool again : {false, true}) {
        Rig rig(chainOf(2));
        rig.goOnline();
        MainWindow window(*rig.model, true);
        Hand::showActive(window);
        rig.model->setVolume(-9);
        window.close();
        EXPECT_TRUE(window.isVisible());
        if (again)
            window.close();
        else
            rig.time.advance(1s);
        QApplication::processEvents();
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(rig.line->board(1).value(1) == gain(-9), !again);
        rig.model->dropEdits();
        EXPECT_EQ(rig.model->unsent, again ? "4 ajustes não foram enviados (caixas 01, 02)" : "");
    }
}

TEST(MainWindowTest, ClosesAtAnyMoment) {
    for (int steps = 0; steps < 4000; steps += 97) {
        Rig rig(chainOf(2));
        auto window = std::make_unique<MainWindow>(*rig.model, true);
        rig.model->technical = true;  // with a list of presets under way
        window->show();
        rig.model->start(rig.model->connect());
        rig.steps(steps);
        rig.model->setTone(ToneBand::mid, 3);
        window.reset();
        rig.steps(steps % 7);
        rig.model.reset();
        rig.steps(200);
        EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{}) << steps;
    }
}
