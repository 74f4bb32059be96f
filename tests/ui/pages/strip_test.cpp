#include "tests/ui/pages/desk.hpp"

#include "ui/kit/tabs.hpp"
#include "ui/pages/shell/speakerchip.hpp"
#include "ui/pages/shell/speakerchips.hpp"
#include "ui/pages/shell/statuslabel.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace Tests;

namespace {

constexpr const char* notice = "A caixa 16 não respondeu a todas as leituras";

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The part of the window that can be seen through all parents of the widget.
QRect seen(const QWidget& widget) {
    QRect part(widget.mapTo(widget.window(), QPoint()), widget.size());
    for (const QWidget* around = widget.parentWidget(); around; around = around->parentWidget())
        part &= QRect(around->mapTo(widget.window(), QPoint()), around->size());
    return part;
}

/// A row that is hidden ends its move at once.
void arrive(Desk& desk) {
    auto& row = *desk.all<SpeakerChips>().at(0);
    row.hide();
    row.show();
}

}  // namespace

TEST(StripTest, KeepsItsWordsLegibleWhateverThereIsToShow) {
    const std::array states{Status::online("usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0"),
                            Status::working("Endereçando as caixas…"),
                            Status::error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".")};
    for (const std::size_t boards : {1, 3, 8, 16}) {
        Desk desk("MAIN", boards);
        for (const auto& speaker : desk.model->speakers.value()) {
            DeviceInfo info = speaker->info.value();
            info.model = "K7Q-112A Subwoofer Duplo";
            speaker->info = info;
        }
        const Speakers renamed = desk.model->speakers.value();
        desk.model->speakers = Speakers{};
        desk.model->speakers = renamed;
        desk.model->target = static_cast<std::uint8_t>((boards + 1) / 2);
        desk.model->notice = notice;
        for (const int width : {1240, 1280})
            for (const Status& status : states)
                for (const bool technical : {false, true}) {
                    desk.view.resize(width, 780);
                    desk.model->technical = technical;
                    desk.model->progress = 0.45;
                    desk.model->status = status;
                    QApplication::processEvents();
                    arrive(desk);
                    const std::string which =
                        std::to_string(boards) + (technical ? " technical " : " simple ") + status.text;
                    EXPECT_GE(seen(desk.find(notice)).width(), 260) << which;
                    EXPECT_GE(seen(desk.find<QWidget>(status.text.c_str())).width(), 120) << which;
                    if (status.isWorking()) {
                        EXPECT_GE(seen(desk.find<QWidget>("45%")).width(), 25) << which;
                    }
                    const auto all = desk.all<SpeakerChip>();
                    auto* const chosen = *std::ranges::find_if(all, &Kit::Button::isChecked);
                    EXPECT_EQ(seen(*chosen).size(), chosen->size()) << which;
                    const QRect tabs = seen(*desk.all<Kit::Tabs>().at(0));
                    EXPECT_LT(seen(*desk.all<StatusLabel>().at(0)).right(), tabs.left()) << which;
                    EXPECT_LE(tabs.right(), width - 32);
                }
        const auto contrast = [&](const QString& text, const QColor& color) {
            auto& warning = desk.find(text);
            EXPECT_TRUE(Hand::shows(warning, color));
            const QColor well = Hand::colorAt(warning, {5.5, warning.height() / 2.0});
            return (luminance(color) + 0.05) / (luminance(well) + 0.05);
        };
        EXPECT_GE(contrast(notice, Theme::accent), 4.5);
        EXPECT_GE(contrast(states.back().text.c_str(), Theme::error), 4.5);
    }
}

TEST(StripTest, ChipsGiveWayTogetherThenScroll) {
    Desk desk("TOM", 16);
    desk.view.resize(1240, 780);
    QApplication::processEvents();
    const auto isSeen = [&](int number) {
        const auto& chip = desk.find(desk.chip(number));
        return seen(chip).size() == chip.size();
    };
    EXPECT_TRUE(isSeen(9) && !isSeen(16) && !desk.shows("Caixas anteriores"));
    desk.click("Caixas seguintes");
    arrive(desk);
    EXPECT_TRUE(isSeen(16) && !isSeen(1) && !desk.shows("Caixas seguintes"));
    Hand::wheel(*desk.all<SpeakerChips>().at(0), {0, 2400});
    arrive(desk);
    EXPECT_TRUE(isSeen(1));
    desk.find(desk.chip(16)).setFocus();
    arrive(desk);
    EXPECT_TRUE(isSeen(16)) << "the focus scrolls";
    desk.model->speakers = Speakers{desk.speaker(0), desk.speaker(1)};
    EXPECT_EQ(desk.find(desk.chip(1)).width(), desk.find(desk.chip(1)).sizeHint().width());
}

TEST(StripTest, TodasAndEscapeTakeTheTargetAway) {
    Desk desk("TOM", 3);
    EXPECT_FALSE(desk.shows("TODAS"));
    const auto leave = [&](const std::function<void()>& act) {
        desk.click(desk.chip(2));
        EXPECT_TRUE(desk.shows("TODAS"));
        act();
        EXPECT_EQ(desk.model->target.value(), std::nullopt);
        EXPECT_FALSE(desk.shows("TODAS"));
        desk.port->sent.clear();
        desk.press("Entrada", Qt::Key_Down);
        EXPECT_EQ(desk.written().size(), 3 * K7Q::inputs.size());
    };
    leave([&] { desk.click("TODAS"); });
    leave([&] { QTest::keyClick(&desk.view, Qt::Key_Escape); });
    desk.goTo("MAIN");
    desk.model->target = 2;
    auto& name = desk.find<QWidget>("Nome do preset");
    name.setFocus();
    QTest::keyClick(&name, Qt::Key_Escape);
    EXPECT_EQ(desk.model->target.value(), 2) << "the key belongs to the field";
    desk.model->target = std::nullopt;
    desk.model->speakers = Speakers{desk.speaker(0)};
    desk.click(desk.chip(1));
    EXPECT_FALSE(desk.shows("TODAS")) << "there is no other speaker";
}
