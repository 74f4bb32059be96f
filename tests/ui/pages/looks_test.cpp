#include "tests/ui/pages/desk.hpp"

#include "ui/kit/knob.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/theme.hpp"
#include "ui/pages/shell/statuslabel.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

/// Whether the control is drawn as the other one.
bool looksLike(QWidget& control, QWidget&& wanted) {
    wanted.resize(control.size());
    return Hand::picture(control) == Hand::picture(wanted);
}

int highestOpacity(QWidget& widget) {
    const QImage image = Hand::picture(widget).convertToFormat(QImage::Format_Alpha8);
    return *std::max_element(image.constBits(), image.constBits() + image.sizeInBytes());
}

}  // namespace

TEST(LooksTest, ButtonsShowTheirTitleIconAndState) {
    using enum Kit::PillButton::Size;
    Desk desk("TOM");
    desk.model->toggleMute();
    desk.set(ModuleKind::delay, "Out1", 0, {DelayValue{1, false}});
    for (const auto& [page, name, title, icon, lit, size] :
         {std::tuple{"TOM", "Música", "MÚSICA", "music.note", false, regular},
          {"TOM", "Mudo, Entrada", "MUDO", "speaker.slash.fill", true, regular},
          {"TOM", "Mudo, Saídas", "MUDO", "speaker.wave.2.fill", false, regular},
          {"TOM", "DESCONECTAR", "DESCONECTAR", "cable.connector", true, compact},
          {"DELAY", "Delay, Saída 2", "ON", "", true, compact}}) {
        desk.goTo(page);
        Kit::PillButton wanted(title, size, nullptr);
        wanted.setIcon(icon);
        wanted.setOn(lit);
        EXPECT_TRUE(looksLike(desk.find(name), std::move(wanted))) << name;
    }
}

TEST(LooksTest, KnobsHaveTheirSizeAndLabels) {
    Desk desk;
    for (const auto& [page, name, look] :
         {std::tuple{"TOM", "Graves", Kit::Knob::Look{160, true, "-12", "+12"}},
          {"DINÂMICA", "Ratio", {150, false, "1", "20"}}}) {
        desk.goTo(page);
        auto& knob = desk.find<Kit::Knob>(name);
        Kit::Knob wanted(name, knob.range, knob.value(), 0, knob.format, look, nullptr);
        EXPECT_TRUE(knob.size() == wanted.size() && looksLike(knob, std::move(wanted))) << name;
    }
}

TEST(LooksTest, TheStatusLineAndTheChipsShowTheStateOfTheLink) {
    Desk desk("TOM", 2);
    desk.model->target = 2;
    for (const auto& [status, text, color, spins, lamp] :
         {std::tuple{Status::offline(), "Desconectado", Theme::secondary, false, false},
          {Status::working("Lendo"), "Lendo", Theme::secondary, true, false},
          {Status::online("ttyUSB0"), "ttyUSB0", Theme::secondary, false, true},
          {Status::error("Falhou"), "Falhou", Theme::error, false, false}}) {
        desk.model->status = status;
        EXPECT_TRUE(Hand::shows(desk.find<QWidget>(text), color)) << text;
        EXPECT_EQ(desk.all<Kit::Spinner>().empty(), !spins) << text;
        EXPECT_EQ(Hand::shows(*desk.all<StatusLabel>().at(0), Theme::good), lamp) << text;
        EXPECT_EQ(Hand::shows(desk.find(desk.chip(1)), Theme::good), lamp) << text;
    }
    const auto over = [](double opacity) { return 1 - (1 - opacity) * (1 - Theme::legible.alphaF()); };
    EXPECT_NEAR(Hand::colorAt(desk.find(desk.chip(1)), {5.5, 15.5}).alphaF(), over(0.04), 0.005);
    EXPECT_NEAR(Hand::colorAt(desk.find(desk.chip(2)), {5.5, 15.5}).alphaF(), over(0.16), 0.005)
        << "the target";
}

TEST(LooksTest, APageIsDimmedWithoutALinkAndARowByItsBypass) {
    Desk desk;
    const auto pixelOfTheKnob = [&desk] {
        const auto& knob = desk.find<Kit::Knob>("Graves");
        return qRed(desk.view.grab().toImage().pixel(knob.mapTo(&desk.view, QPoint(knob.width() / 2, 50))));
    };
    const int dimmed = pixelOfTheKnob();
    desk.goTo("TOM");
    // The page is drawn at 0.45. The background shines through and adds the rest.
    EXPECT_NEAR(dimmed, 0.53 * pixelOfTheKnob(), 8);
    desk.goTo("OUT 1");
    desk.set(ModuleKind::peq, "Out0", 1, {PeqValue{.bypass = true}});
    desk.set(ModuleKind::lpf, "Out0", 0, {FilterValue{.bypass = false}});
    const auto compare = [](QWidget* bypassed, QWidget* active, double opacity) {
        const auto faint = OnScreen::all<QWidget>(*bypassed);
        const auto clear = OnScreen::all<QWidget>(*active);
        EXPECT_NEAR(highestOpacity(*faint.at(0)), opacity * highestOpacity(*clear.at(0)), 6) << "title";
        for (std::size_t i = 1; i < faint.size(); ++i)
            EXPECT_LT(highestOpacity(*faint[i]), 0.9 * highestOpacity(*clear[i])) << i;
    };
    compare(desk.all<PeqRow>().at(1), desk.all<PeqRow>().at(0), 0.55);
    compare(desk.all<FilterRow>().at(0), desk.all<FilterRow>().at(1), 0.6);
}
