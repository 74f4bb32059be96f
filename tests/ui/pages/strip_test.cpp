#include "tests/ui/pages/desk.hpp"

#include "ui/kit/tabs.hpp"
#include "ui/pages/shell/speakerchip.hpp"
#include "ui/pages/shell/speakerchips.hpp"
#include "ui/pages/shell/statuslabel.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

constexpr const char* notice = "A caixa 16 não respondeu a todas as leituras";

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
    const Status states[] = {Status::online("usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0"),
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
                        EXPECT_GE(seen(desk.find<QWidget>("Leitura das caixas")).width(), 25) << which;
                    }
                    const auto all = desk.all<SpeakerChip>();
                    auto* const chosen = *std::ranges::find_if(all, &Kit::Button::isChecked);
                    EXPECT_EQ(seen(*chosen).size(), chosen->size()) << which;
                    const QRect tabs = seen(*desk.all<Kit::Tabs>().at(0));
                    EXPECT_LT(seen(*desk.all<StatusLabel>().at(0)).right(), tabs.left()) << which;
                    EXPECT_LE(tabs.right(), width - 32);
                }
        EXPECT_TRUE(Hand::shows(desk.find(notice), Theme::accent));
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
}

TEST(StripTest, TodasAndEscapeTakeTheTargetAway) {
    Desk desk("MAIN", 3);
    EXPECT_FALSE(desk.shows("Todas"));
    for (const bool byKey : {false, true}) {
        desk.click(desk.chip(2));
        byKey ? desk.press(desk.view, Qt::Key_Escape) : desk.click("Todas");
        EXPECT_EQ(desk.model->target.value(), std::nullopt);
        EXPECT_FALSE(desk.shows("Todas"));
        desk.port->sent.clear();
        desk.press("In 1", Qt::Key_Down);
        EXPECT_EQ(desk.written().size(), 3U);
    }
    desk.model->target = 2;
    auto& name = desk.find<QWidget>("Nome do preset");
    name.setFocus();
    desk.press(name, Qt::Key_Escape);
    EXPECT_EQ(desk.model->target.value(), 2) << "the key belongs to the field";
}

TEST(StripTest, AChipTellsThatItsSpeakerWasNotReadCompletely) {
    Desk desk("TOM", 2);
    const auto description = [&](int number) { return desk.find(desk.chip(number)).accessibleDescription(); };
    const ModuleValues whole = desk.speaker(1)->values.value();
    desk.port->swallow = [](const Sent& sent) { return sent.module == 40; };
    for (const bool isWhole : {false, true}) {
        ModuleValues values = whole;
        if (!isWhole) values.erase(40);
        desk.speaker(1)->values = values;
        desk.settle();
        EXPECT_EQ(description(1), "Alt+1");
        EXPECT_EQ(description(2), isWhole ? "Alt+2" : "Alt+2, Leitura incompleta");
    }
}
