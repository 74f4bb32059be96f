#include "tests/ui/pages/desk.hpp"

#include "ui/kit/panel.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/pages/shell/logotitle.hpp"
#include "ui/pages/shell/mainwindow.hpp"

#include <gtest/gtest.h>

#include <QWindow>

using namespace Tests;

TEST(ShellTest, GuidesFromOfflineToOnlineAndBack) {
    Desk desk(2);
    EXPECT_TRUE(desk.shows<Kit::Caption>("Conecte às caixas"));
    EXPECT_TRUE(desk.shows<Kit::Caption>("O cabo vai na entrada \"From PC\" da primeira caixa."));
    EXPECT_FALSE(desk.find("Mudo da entrada").isEnabled());

    QTest::mouseClick(OnScreen::all<Kit::Button>(desk.view).back(), Qt::LeftButton);  // the card's
    ASSERT_TRUE(desk.until([&] { return desk.model->progress.value().value_or(0) > 0.4; }));
    EXPECT_TRUE(desk.shows<Kit::Caption>("Conectando às caixas…"));
    EXPECT_TRUE(desk.shows<Kit::Caption>("Lendo a caixa 01…"));
    EXPECT_TRUE(desk.shows<Kit::Caption>("40%") || desk.shows<Kit::Caption>("41%"));
    EXPECT_TRUE(desk.lit("DESCONECTAR"));
    EXPECT_FALSE(desk.shows("CONECTAR"));
    EXPECT_FALSE(desk.find("Procurar e renumerar as caixas").isEnabled());

    ASSERT_TRUE(desk.until([&] { return desk.model->status.value().isOnline(); }));
    EXPECT_FALSE(desk.shows<Kit::Caption>("Conectando às caixas…"));
    EXPECT_FALSE(desk.shows<Kit::Caption>("100%"));
    EXPECT_TRUE(desk.shows<Kit::Caption>("/dev/ttyUSB0"));
    EXPECT_TRUE(desk.find("Mudo da entrada").isEnabled());

    desk.click("DESCONECTAR");
    EXPECT_TRUE(desk.shows<Kit::Caption>("Conecte às caixas"));
    EXPECT_EQ(desk.line->summary().faults, std::vector<std::string>{});
}

TEST(ShellTest, ALostLinkShowsWhyAndKeepsTheValues) {
    Desk desk;
    desk.connectByHand();
    desk.find<Kit::ValueControl>("Graves").propose(5);
    desk.cable.lock()->cut(std::make_exception_ptr(TransportError::open("/dev/ttyUSB0", EIO)));
    desk.settle();
    EXPECT_TRUE(desk.shows<Kit::Caption>("Não foi possível abrir /dev/ttyUSB0: Input/output error"));
    EXPECT_FALSE(desk.lit("CONECTAR"));

    // The page takes neither the mouse nor keys while it is dimmed.
    auto& knob = desk.find<Kit::ValueControl>("Graves");
    QTest::keyClick(&knob, Qt::Key_Up);
    EXPECT_NE(desk.view.childAt(knob.mapTo(&desk.view, knob.rect().center())), &knob);
    EXPECT_EQ(desk.value("Graves"), 5);
}

TEST(ShellTest, OffersThePortsAndTheBridge) {
    Desk desk;
    EXPECT_EQ(desk.readOut("Porta"), "ttyUSB0");
    EXPECT_FALSE(desk.shows<Kit::TextField>("endereço"));
    desk.press("Porta", Qt::Key_Down);
    EXPECT_EQ(desk.readOut("Porta"), "Controle Wi-Fi (ESP32)");
    EXPECT_EQ(desk.model->portChoice.value(), "esp");
    auto& host = desk.find<Kit::TextField>("endereço");
    EXPECT_EQ(host.text(), "192.168.4.1");
    host.selectAll();
    QTest::keyClicks(&host, "10.0.0.7");
    EXPECT_EQ(desk.model->espHost.value(), "10.0.0.7");
    desk.press("Porta", Qt::Key_Up);
    EXPECT_FALSE(desk.shows<Kit::TextField>("endereço"));
    desk.model->ports = std::vector<std::string>();
    desk.press("Porta", Qt::Key_Down);
    EXPECT_EQ(desk.readOut("Porta"), "Controle Wi-Fi (ESP32)") << "also without serial ports";
    desk.click("Atualizar portas");
    EXPECT_EQ(desk.model->ports.value(), std::vector<std::string>{"/dev/ttyUSB0"});
}

TEST(ShellTest, HeaderAndStripAct) {
    Desk desk(2);
    desk.connectByHand();
    const QString second = "02 · " + QString::fromStdString(desk.speaker(1)->info.value().model);
    desk.click(second);
    desk.click(second);
    EXPECT_EQ(desk.model->target.value(), 2) << "a second click keeps the target";
    EXPECT_TRUE(desk.lit(second));
    desk.find<Kit::ValueControl>("Agudos").propose(5);
    desk.settle();
    EXPECT_EQ(desk.held<PeqValue>(1, ModuleKind::peq, "In1", 3).gain, 5);
    EXPECT_EQ(desk.held<PeqValue>(0, ModuleKind::peq, "In1", 3).gain, 0);
    desk.model->target = 1;
    EXPECT_EQ(desk.value("Agudos"), 0);

    desk.model->notice = "A caixa 01 parou de responder";
    desk.click("A caixa 01 parou de responder");
    EXPECT_EQ(desk.model->notice.value(), std::nullopt);
    EXPECT_FALSE(desk.shows("A caixa 01 parou de responder"));

    desk.goTo("X-OVER");
    EXPECT_EQ(desk.view.techPage.value().title(), "X-OVER");
    desk.click("MODO TÉCNICO");
    EXPECT_FALSE(desk.model->technical.value());
    EXPECT_TRUE(desk.lit("TOM"));
    desk.model->technical = true;
    EXPECT_TRUE(desk.lit("X-OVER"));

    desk.port->sent.clear();
    desk.click("Procurar e renumerar as caixas");
    EXPECT_FALSE(desk.sentOf(Fun::netStart).empty());
}

TEST(ShellTest, ALongChainAndEveryPageFitTheSmallestWindow) {
    Desk desk(16);
    desk.view.resize(ContentView::smallest);
    desk.goTo("DELAY");
    for (const TechPage& page : TechPage::all) {
        auto& last = desk.find<Kit::Button>(desk.model->technical.value() ? "OUT 4" : "DELAY");
        const QRect tab(last.mapTo(&desk.view, QPoint()), last.size());
        EXPECT_LE(tab.right(), desk.view.width() - 32);
        EXPECT_EQ(desk.view.childAt(tab.center()), &last);
        desk.goTo(page.title());
        EXPECT_EQ(desk.view.size(), ContentView::smallest);
        for (const Kit::Panel* const panel : desk.all<Kit::Panel>()) {
            EXPECT_GE(panel->height(), panel->minimumSizeHint().height()) << qPrintable(page.title());
            EXPECT_GE(panel->width(), panel->minimumSizeHint().width()) << qPrintable(page.title());
            const QPoint end = panel->mapTo(&desk.view, panel->rect().bottomRight());
            EXPECT_LE(end.y(), ContentView::smallest.height() - 24) << qPrintable(page.title());
            EXPECT_LE(end.x(), ContentView::smallest.width() - 32) << qPrintable(page.title());
        }
    }
    // All pages are built; they outlive speakers and link.
    desk.model->target = 2;
    desk.model->speakers = Speakers{};
    for (const TechPage& page : TechPage::all) {
        desk.view.techPage = page;
        EXPECT_FALSE(desk.view.grab().isNull());
    }
    desk.click("DESCONECTAR");
    EXPECT_FALSE(desk.view.grab().isNull());
}

TEST(ShellTest, AClickOnTheLogoWithAltAndControlTogglesTheTechnicalMode) {
    Desk desk;
    auto& logo = desk.find<LogoTitle>("CORVANE");
    constexpr Qt::KeyboardModifiers secret = Qt::AltModifier | Qt::ControlModifier;
    const QPoint inside = logo.rect().center();
    for (const auto& [modifiers, end, technical] :
         {std::tuple{Qt::KeyboardModifiers(), inside, false},
          {Qt::KeyboardModifiers(Qt::AltModifier), inside, false},
          {Qt::KeyboardModifiers(Qt::ControlModifier), inside, false},
          {secret, QPoint(-5, 5), false},
          {secret, inside, true},
          {secret, inside, false}}) {
        const bool before = desk.model->technical.value();
        QTest::mousePress(&logo, Qt::LeftButton, modifiers, inside);
        EXPECT_EQ(desk.model->technical.value(), before);
        Hand::mouse(logo, QEvent::MouseButtonRelease, end, modifiers);
        EXPECT_EQ(desk.model->technical.value(), technical);
    }
    QTest::mouseDClick(&logo, Qt::LeftButton, secret);
    EXPECT_FALSE(desk.model->technical.value()) << "two clicks";
}

TEST(MainWindowTest, ButtonsAndHeaderMoveAndZoomTheWindow) {
    const Rig rig;
    MainWindow window(*rig.model, true);
    Hand::showActive(window);
    window.resize(300, 200);
    EXPECT_EQ(window.size(), ContentView::smallest);
    EXPECT_EQ(window.content().size(), ContentView::smallest);

    const QPoint header(600, 40);
    auto& logo = OnScreen::find<LogoTitle>(window, "CORVANE");
    const auto click = [&window](const QString& name) {
        QTest::mouseClick(&OnScreen::find<Kit::Button>(window, name), Qt::LeftButton);
    };
    click("Ampliar");
    EXPECT_TRUE(window.isMaximized());
    click("Ampliar");
    EXPECT_FALSE(window.isMaximized());
    QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(600, 400));
    QTest::mouseDClick(&logo, Qt::LeftButton);
    EXPECT_FALSE(window.isMaximized());
    QTest::mouseDClick(&window, Qt::LeftButton, {}, header);
    EXPECT_TRUE(window.isMaximized());
    window.showNormal();

    for (QWidget* const grabbed : std::initializer_list<QWidget*>{&window, &logo}) {
        const QPoint before = window.pos();
        const QPointF at = grabbed == &window ? QPointF(header) : QPointF(10, 10);
        Hand::mouse(*grabbed, QEvent::MouseButtonPress, at);
        QMouseEvent move(QEvent::MouseMove, at, grabbed->mapToGlobal(at) + QPointF(30, 20), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(grabbed, &move);
        EXPECT_EQ(window.pos(), before + QPoint(30, 20));
        Hand::mouse(*grabbed, QEvent::MouseButtonRelease, at);
        QApplication::sendEvent(grabbed, &move);
        EXPECT_EQ(window.pos(), before + QPoint(30, 20));
    }

    const auto pointAt = [&window](QPointF at) {
        QMouseEvent move(QEvent::MouseMove, at, window.mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(window.windowHandle(), &move);
    };
    for (const auto& [at, shape] : {std::pair{QPoint(2, 300), Qt::SizeHorCursor},
                                    {QPoint(600, 2), Qt::SizeVerCursor},
                                    {QPoint(2, 2), Qt::SizeFDiagCursor},
                                    {QPoint(1238, 2), Qt::SizeBDiagCursor}}) {
        pointAt(at);
        ASSERT_TRUE(QApplication::overrideCursor());
        EXPECT_EQ(QApplication::overrideCursor()->shape(), shape);
    }
    pointAt({600, 400});
    EXPECT_FALSE(QApplication::overrideCursor());
    click("Minimizar");
    EXPECT_TRUE(window.isMinimized());
    window.showNormal();
    click("Fechar");
    EXPECT_FALSE(window.isVisible());
}

TEST(MainWindowTest, ClosesAtAnyMoment) {
    for (int steps = 0; steps < 4000; steps += 97) {
        Rig rig(chainOf(2));
        auto window = std::make_unique<MainWindow>(*rig.model, true);
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
