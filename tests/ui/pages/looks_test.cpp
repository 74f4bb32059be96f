#include "tests/ui/pages/desk.hpp"

#include "ui/kit/backdrop.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/theme.hpp"
#include "ui/pages/shell/statuslabel.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include <gtest/gtest.h>

using namespace Tests;
using Kit::PillButton;

namespace {

/// Whether the control is drawn as the other one.
bool looksLike(QWidget& control, QWidget&& wanted) {
    wanted.resize(control.size());
    return Hand::picture(control, 1) == Hand::picture(wanted, 1);
}

// Of the strongest pixel, 0 to 255.
int ink(QWidget& widget) {
    const QImage image = Hand::picture(widget, 1).convertToFormat(QImage::Format_Alpha8);
    const auto* const pixels = image.constBits();
    return *std::max_element(pixels, pixels + image.sizeInBytes());
}

}  // namespace

TEST(LooksTest, ButtonsShowTheirTitleIconAndState) {
    constexpr auto regular = PillButton::Size::regular;
    constexpr auto compact = PillButton::Size::compact;
    Desk desk("TOM");
    desk.model->toggleMute();
    desk.set(ModuleKind::delay, "Out1", 0, {DelayValue{1, false}});
    for (const auto& [page, name, title, icon, lit, size] :
         {std::tuple{"TOM", "PLANO", "PLANO", "minus", true, regular},
          {"TOM", "MÚSICA", "MÚSICA", "music.note", false, regular},
          {"TOM", "Mudo da entrada", "MUDO", "speaker.slash.fill", true, regular},
          {"TOM", "Mudo das saídas", "MUDO", "speaker.wave.2.fill", false, regular},
          {"TOM", "DESCONECTAR", "DESCONECTAR", "cable.connector", true, compact},
          {"MAIN", "MODO TÉCNICO", "MODO TÉCNICO", "xmark", true, compact},
          {"DELAY", "Delay da saída 1", "OFF", "", false, compact},
          {"DELAY", "Delay da saída 2", "ON", "", true, compact}}) {
        desk.goTo(page);
        PillButton wanted(title, size, nullptr);
        wanted.setIcon(icon);
        wanted.setOn(lit);
        EXPECT_TRUE(looksLike(desk.find(name), std::move(wanted))) << name;
    }
}

TEST(LooksTest, KnobsHaveTheirSizeAndLabels) {
    Desk desk;
    for (const auto& [page, name, look] :
         {std::tuple{"TOM", "Graves", Kit::Knob::Look{160, true, "-12", "+12"}},
          {"DINÂMICA", "Threshold", {150, false, "-20", "+22"}},
          {"DINÂMICA", "Ratio", {150, false, "1", "20"}},
          {"DINÂMICA", "Knee", {96}},
          {"IN 1", "Threshold", {82}},
          {"IN 1", "Attack", {62}}}) {
        desk.goTo(page);
        const auto& knob = desk.find<Kit::ValueControl>(name);
        Kit::Knob wanted(name, knob.range, knob.value(), 0, knob.format, look, nullptr);
        EXPECT_EQ(knob.size(), wanted.size()) << name;
        EXPECT_TRUE(looksLike(desk.find<QWidget>(name), std::move(wanted))) << name;
    }
}

TEST(LooksTest, TheStatusLineShowsTheStateOfTheLink) {
    Desk desk;
    for (const auto& [status, text, color, spinners, lamp] :
         {std::tuple{Status::offline(), "Desconectado", Theme::secondary, 0, false},
          {Status::working("Lendo"), "Lendo", Theme::secondary, 1, false},
          {Status::online("ttyUSB0"), "ttyUSB0", Theme::secondary, 0, true},
          {Status::error("Falhou"), "Falhou", Theme::error, 0, false}}) {
        desk.model->status = status;
        QApplication::processEvents();
        EXPECT_TRUE(
            looksLike(desk.find<Kit::Caption>(text), Kit::Caption(text, Theme::font(13), color, nullptr)));
        EXPECT_EQ(desk.all<Kit::Spinner>().size(), spinners) << text;
        const QImage line = desk.all<StatusLabel>().at(0)->grab().toImage();
        EXPECT_EQ(line.pixel(10, line.height() / 2) == Theme::good.rgb(), lamp) << text;
    }
}

TEST(LooksTest, AChipHasALampForTheLinkAndIsFilledForTheTarget) {
    Desk desk("TOM", 2);
    desk.model->target = 2;
    for (const auto& [status, lamp] :
         {std::pair{Status::online(""), Theme::good}, {Status::offline(), Theme::grey(0.2)}}) {
        desk.model->status = status;
        for (const auto& [number, fill] : {std::pair{1, 0.04}, {2, 0.16}}) {
            const QImage chip = Hand::picture(desk.find(desk.chip(number)), 1);
            EXPECT_EQ(chip.pixel(18, chip.height() / 2), lamp.rgba());
            EXPECT_NEAR(qAlpha(chip.pixel(5, chip.height() / 2)), fill * 255, 1);
        }
    }
}

TEST(LooksTest, APageIsDimmedWithoutALinkAndARowByItsBypass) {
    Desk desk;
    QImage backdrop(desk.view.size(), QImage::Format_RGB32);
    QPainter painter(&backdrop);
    Kit::drawBackdrop(painter, desk.view.rect());
    auto& knob = desk.find<Kit::Knob>("Graves");
    const QPoint pointer = knob.mapTo(&desk.view, QPoint(knob.width() / 2, 50));
    const int dimmed = qRed(desk.view.grab().toImage().pixel(pointer));
    desk.goTo("TOM");
    const int full = qRed(desk.view.grab().toImage().pixel(pointer));
    EXPECT_NEAR(dimmed, 0.45 * full + 0.55 * qRed(backdrop.pixel(pointer)), 1.5);
    EXPECT_GT(full, 230);

    desk.goTo("OUT 1");
    desk.set(ModuleKind::peq, "Out0", 1, {PeqValue{.bypass = true}});
    desk.set(ModuleKind::lpf, "Out0", 0, {FilterValue{.bypass = false}});
    const auto compare = [](QWidget* bypassed, QWidget* active, double opacity) {
        const auto faint = OnScreen::all<QWidget>(*bypassed);
        const auto clear = OnScreen::all<QWidget>(*active);
        EXPECT_NEAR(ink(*faint.at(0)), opacity * ink(*clear.at(0)), 6) << "the title";
        for (std::size_t i = 1; i < faint.size(); ++i)
            EXPECT_LT(ink(*faint[i]), 0.9 * ink(*clear[i])) << i;
    };
    compare(desk.all<PeqRow>().at(1), desk.all<PeqRow>().at(0), 0.55);
    compare(desk.all<FilterRow>().at(0), desk.all<FilterRow>().at(1), 0.6);
}

TEST(LooksTest, EveryMeterShowsItsOwnChannel) {
    Desk desk;
    for (const auto& [page, meter, reading] : {std::tuple{"TOM", "ENTRADA L", "0 VU"},
                                               {"TOM", "ENTRADA R", "3 VU"},
                                               {"TOM", "Entrada, nível 2", "-15.0 dB"},
                                               {"TOM", "Saída 1", "-30.0 dB"},
                                               {"TOM", "Saída 4", "-50.0 dB"},
                                               {"DINÂMICA", "Out3", "-50.0 dB"},
                                               {"MAIN", "In 2, nível 1", "-15.0 dB"},
                                               {"OUT 3", "SAÍDA 3, nível 1", "-40.0 dB"}}) {
        desk.goTo(page);
        desk.model->meters = {-18, -15, -30, -20, -40, -50};
        EXPECT_EQ(desk.readOut(meter), reading) << meter;
    }
    desk.goTo("DINÂMICA");
    desk.click("SAÍDA 2");
    EXPECT_TRUE(desk.shows("Out1") && !desk.shows("Out0"));
    desk.goTo("DELAY");
    desk.set(ModuleKind::delay, "Out2", 0, {DelayValue{5, true}});
    EXPECT_TRUE(desk.shows("171.5 cm")) << "a distance";
}
