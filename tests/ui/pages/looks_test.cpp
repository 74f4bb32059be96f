#include "tests/ui/pages/desk.hpp"

#include "ui/kit/analogvu.hpp"
#include "ui/kit/backdrop.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/meterbar.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/pages/shell/statuslabel.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

/// Whether the control is drawn as that one.
bool looksLike(QWidget& control, QWidget& wanted) {
    wanted.resize(control.size());
    return Hand::picture(control, 1) == Hand::picture(wanted, 1);
}

std::vector<QRgb> pixelsOf(QWidget& control) {
    const QImage image = Hand::picture(control, 1);
    std::vector<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            pixels.push_back(image.pixel(x, y));
    return pixels;
}

bool hasInk(QWidget& control, const QColor& color) {
    return std::ranges::count(pixelsOf(control), color.rgba()) > 0;
}

int strongestInk(QWidget& control) {
    int most = 0;
    for (const QRgb pixel : pixelsOf(control))
        most = std::max(most, qAlpha(pixel));
    return most;
}

}  // namespace

TEST(LooksTest, ButtonsShowTheirTitleIconAndState) {
    using Size = Kit::PillButton::Size;
    const struct {
        const char* page;
        const char* name;
        const char* title;
        const char* icon;
        bool on;
        Size size;
    } buttons[] = {
        {"TOM", "PLANO", "PLANO", "minus", true, Size::regular},
        {"TOM", "VOZ", "VOZ", "mic", false, Size::regular},
        {"TOM", "MÚSICA", "MÚSICA", "music.note", false, Size::regular},
        {"TOM", "FESTA", "FESTA", "sparkles", false, Size::regular},
        {"TOM", "AO VIVO", "AO VIVO", "music.mic", false, Size::regular},
        {"TOM", "Mudo da entrada", "MUDO", "speaker.slash.fill", true, Size::regular},
        {"TOM", "Mudo das saídas", "MUDO", "speaker.wave.2.fill", false, Size::regular},
        {"TOM", "DESCONECTAR", "DESCONECTAR", "cable.connector", true, Size::compact},
        {"MAIN", "MODO TÉCNICO", "MODO TÉCNICO", "xmark", true, Size::compact},
        {"DELAY", "Delay da saída 1", "OFF", "", false, Size::compact},
        {"DELAY", "Delay da saída 2", "ON", "", true, Size::compact},
    };
    Desk desk;
    desk.connectByHand();
    desk.model->toggleMute();
    desk.model->set(K7Q::index(ModuleKind::delay, "Out1", 0), {DelayValue{1, false}});
    for (const auto& [page, name, title, icon, on, size] : buttons) {
        desk.goTo(page);
        Kit::PillButton wanted(title, size, nullptr);
        wanted.setIcon(icon);
        wanted.setOn(on);
        EXPECT_TRUE(looksLike(desk.find(name), wanted)) << name;
    }
}

TEST(LooksTest, KnobsAreLabelledWithTheirRange) {
    const struct {
        const char* page;
        const char* name;
        Kit::Range range;
        Kit::KnobLook look;
    } knobs[] = {
        {"TOM", "Graves", {-12, 12}, {.size = 160, .bipolar = true, .minLabel = "-12", .maxLabel = "+12"}},
        {"DINÂMICA", "Threshold", {-20, 22}, {.size = 150, .minLabel = "-20", .maxLabel = "+22"}},
        {"DINÂMICA", "Ratio", {1, 20}, {.size = 150, .minLabel = "1", .maxLabel = "20"}},
        {"DINÂMICA", "Knee", {0, 30}, {.size = 96}},
        {"OUT 1", "Threshold", {-20, 22}, {.size = 82}},
        {"OUT 1", "Attack", {0, 182}, {.size = 62}},
    };
    Desk desk;
    for (const auto& [page, name, range, look] : knobs) {
        desk.goTo(page);
        auto& control = desk.find<Kit::ValueControl>(name);
        Kit::Knob wanted(name, range, control.value(), 0, control.format, look, nullptr);
        EXPECT_EQ(control.size(), wanted.size()) << name;
        EXPECT_TRUE(looksLike(control, wanted)) << name;
    }
}

TEST(LooksTest, TheStatusLineShowsTheStateOfTheLink) {
    const struct {
        Status status;
        const char* text;
        QColor color;
        bool spins;
        bool lamp;
    } states[] = {
        {Status::offline(), "Desconectado", Theme::secondary, false, false},
        {Status::working("Lendo"), "Lendo", Theme::secondary, true, false},
        {Status::online("ttyUSB0"), "ttyUSB0", Theme::secondary, false, true},
        {Status::error("Falhou"), "Falhou", Theme::error, false, false},
    };
    Desk desk;
    for (const auto& [status, text, color, spins, lamp] : states) {
        desk.model->status = status;
        QApplication::processEvents();
        Kit::Caption wanted(text, Theme::font(13), color, nullptr);
        EXPECT_TRUE(looksLike(desk.find<Kit::Caption>(text), wanted)) << text;
        EXPECT_EQ(desk.all<Kit::Spinner>().empty(), !spins) << text;
        EXPECT_EQ(hasInk(*desk.all<StatusLabel>().at(0), Theme::good), lamp) << text;
    }
}

TEST(LooksTest, AChipHasALampForTheLinkAndIsFilledForTheTarget) {
    Desk desk(2);
    desk.connectByHand();
    desk.model->target = 2;
    for (const bool online : {true, false}) {
        if (!online) desk.model->status = Status::offline();
        for (const auto& [position, fill] : {std::pair{0, 0.04}, {1, 0.16}}) {
            const QString model = QString::fromStdString(desk.speaker(0)->info.value().model);
            auto& chip = desk.find(QString("0%1 · ").arg(position + 1) + model);
            const QImage image = Hand::picture(chip, 1);
            EXPECT_EQ(image.pixel(18, chip.height() / 2), (online ? Theme::good : Theme::grey(0.2)).rgba());
            EXPECT_NEAR(qAlpha(image.pixel(5, chip.height() / 2)), fill * 255, 1);
        }
    }
}

TEST(LooksTest, APageWithoutALinkIsDimmed) {
    Desk desk;
    const QImage offline = desk.view.grab().toImage();
    desk.connectByHand();
    const QImage online = desk.view.grab().toImage();
    QImage backdrop(online.size(), online.format());
    QPainter painter(&backdrop);
    Kit::drawBackdrop(painter, desk.view.rect());
    const QPoint onPanel = desk.page().mapTo(&desk.view, QPoint(200, 60));
    const auto red = [onPanel](const QImage& image) { return qRed(image.pixel(onPanel)); };
    EXPECT_NE(red(online), red(backdrop));
    EXPECT_NEAR(red(offline), 0.45 * red(online) + 0.55 * red(backdrop), 1.5);
}

TEST(LooksTest, ABypassedRowIsFaint) {
    Desk desk;
    desk.goTo("OUT 1");
    for (const auto& [row, kind, opacity] :
         {std::tuple<QWidget*, ModuleKind, double>{desk.all<PeqRow>().at(0), ModuleKind::peq, 0.55},
          {desk.all<FilterRow>().at(0), ModuleKind::hpf, 0.6}}) {
        const std::uint8_t module = K7Q::index(kind, "Out0", 0);
        ModuleValue value = desk.shown(0, module);
        std::map<bool, std::vector<int>> ink;
        for (const bool bypass : {false, true}) {
            forEachField(value, [bypass = bypass](std::string_view name, auto& field) {
                if (name == "bypass") field = bypass;
            });
            desk.model->set(module, value);
            for (QWidget* const cell : OnScreen::all<QWidget>(*row))
                ink[bypass].push_back(strongestInk(*cell));
        }
        EXPECT_NEAR(ink[true][0], opacity * ink[false][0], 2) << "the title";
        for (std::size_t i = 1; i < ink[true].size(); ++i)
            EXPECT_LT(ink[true][i], 0.9 * ink[false][i]) << i;
    }
}

TEST(LooksTest, EveryMeterShowsItsOwnChannel) {
    const struct {
        const char* page;
        std::vector<std::pair<const char*, const char*>> readings;
    } pages[] = {
        {"TOM",
         {{"ENTRADA L", "0 VU"},
          {"ENTRADA R", "3 VU"},
          {"Entrada, nível 1", "-18.0 dB"},
          {"Entrada, nível 2", "-15.0 dB"},
          {"Saída 1", "-30.0 dB"},
          {"Saída 4", "-50.0 dB"}}},
        {"DINÂMICA", {{"Out0", "-30.0 dB"}, {"Out3", "-50.0 dB"}}},
        {"MAIN", {{"In 2, nível 1", "-15.0 dB"}, {"Out 2, nível 1", "-20.0 dB"}}},
        {"OUT 3", {{"SAÍDA 3, nível 1", "-40.0 dB"}}},
    };
    Desk desk;
    for (const auto& [page, readings] : pages) {
        desk.goTo(page);
        desk.model->meters = {-18, -15, -30, -20, -40, -50};
        for (const auto& [meter, reading] : readings)
            EXPECT_EQ(desk.readOut(meter), reading) << meter;
    }
    desk.goTo("TOM");
    desk.model->meters = {-18, -15, -30, -20, -40, -50};
    EXPECT_TRUE(desk.shows<Kit::Caption>("-20.0 dB")) << "the peak of the outputs";
    desk.goTo("DINÂMICA");
    desk.click("SAÍDA 2");
    EXPECT_EQ(desk.all<Kit::MeterBar>().size(), 1U);
}
