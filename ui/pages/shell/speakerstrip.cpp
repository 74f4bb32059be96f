#include "ui/pages/shell/speakerstrip.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shell/padlock.hpp"
#include "ui/pages/shell/speakerchips.hpp"
#include "ui/pages/shell/statuslabel.hpp"

#include "ui/kit/iconbutton.hpp"
#include "ui/kit/theme.hpp"

#include <QHBoxLayout>

#include <algorithm>

namespace Corvane {

namespace {

constexpr QMargins margins(32, 14, 32, 0);
constexpr int tightTop = 8;
constexpr int twoAddresses = 132;  // with an arrow: what the chips claim before padlock and status give way

template <class List, class Value>
int positionIn(const List& list, const Value& value) {
    return static_cast<int>(std::ranges::find(list, value) - list.begin());
}

QStringList keysOf(qsizetype pages) {
    QStringList keys;
    while (keys.size() < pages)
        keys << QStringLiteral("Ctrl+%1").arg(keys.size() + 1);
    return keys;
}

}  // namespace

// A row that divides its width between chips, padlock and status, by limits on their widths. It does
// so before its items get their places.
class SpeakerStrip::Row final : public QHBoxLayout {
public:
    Row(SpeakerChips& chips, Padlock& padlock, StatusLabel& status, QWidget* parent)
        : QHBoxLayout(parent)
        , chips(chips)
        , padlock(padlock)
        , status(status) {
        setContentsMargins(margins);
        setSpacing(12);
    }

    void setGeometry(const QRect& area) override {
        int room = area.marginsRemoved(contentsMargins()).width() - othersWidth();
        const int leastStatus = status.minimumSizeHint().width();
        if (!padlock.isHidden()) room -= padlockWidth(room - leastStatus);
        const int wholeStatus = status.sizeHint().width();
        const int forChips =
            chips.widthWithin(std::max(room - wholeStatus, std::min(chips.shortWidth(), twoAddresses)));
        const int forStatus = std::clamp(room - forChips, leastStatus, wholeStatus);
        chips.setMaximumWidth(std::clamp(room - forStatus, 0, forChips));
        status.setMaximumWidth(forStatus);
        QHBoxLayout::setGeometry(area);
    }

private:
    // Without its word when the chips would otherwise be left with less than they claim.
    int padlockWidth(int room) {
        const int whole = padlock.sizeHint().width();
        const int width = room - whole < std::min(chips.shortWidth(), twoAddresses)
                              ? padlock.minimumSizeHint().width()
                              : whole;
        padlock.setMaximumWidth(width);
        return width;
    }

    // Of all other items, and the gaps.
    int othersWidth() const {
        int width = -spacing();
        for (int i = 0; i < count(); ++i) {
            QLayoutItem* const item = itemAt(i);
            if (item->isEmpty()) continue;
            const bool divided =
                item->widget() == &chips || item->widget() == &padlock || item->widget() == &status;
            width += spacing() + (divided ? 0 : item->sizeHint().width());
        }
        return width;
    }

    SpeakerChips& chips;
    Padlock& padlock;
    StatusLabel& status;
};

SpeakerStrip::SpeakerStrip(AppModel& model, const Choices& choices, QWidget* parent)
    : QWidget(parent)
    , model(model)
    , choices(choices) {
    auto* const chips = new SpeakerChips(model, this);
    auto* const padlock = new Padlock(this);
    lock = padlock;
    auto* const status = new StatusLabel(model, this);
    padlock->action = [locked = &choices.locked] { *locked = false; };
    Corvane::bind(
        *padlock, [this] { return this->choices.locked.value(); },
        [padlock](bool locked) { padlock->setVisible(locked); });
    auto* const row = new Row(*chips, *padlock, *status, this);
    row->addWidget(chips);
    addSearchButton(*row);
    row->addWidget(padlock);
    row->addWidget(status);
    row->addStretch(1);
    addSimpleTabs(*row);
    addTechnicalTabs(*row);
}

void SpeakerStrip::setRoom(const Room& room) {
    layout()->setContentsMargins(margins.left() + room.beside, room.between(tightTop, margins.top()),
                                 margins.right() + room.beside, margins.bottom());
    layout()->activate();
}

void SpeakerStrip::addSearchButton(QHBoxLayout& row) {
    auto* const button = new Kit::IconButton(QStringLiteral("dot.radiowaves.left.and.right"),
                                             QStringLiteral("Procurar e renumerar as caixas"), 18, this);
    button->action = [this] { model.start(model.discover(true)); };
    Corvane::bind(
        *button, [this] { return model.status.value().isOnline(); },
        [button](bool online) { button->setEnabled(online); });
    // Spinner and padlock stand in its place.
    Corvane::bind(
        *button, [this] { return model.status.value().isWorking() || choices.locked.value(); },
        [button](bool busy) { button->setVisible(!busy); });
    row.addWidget(button);
}

void SpeakerStrip::addSimpleTabs(QHBoxLayout& row) {
    QStringList titles;
    for (const Page each : simplePages)
        titles << titleOf(each);
    auto* const tabs = new Kit::Tabs(titles, Theme::text, 18, this);
    tabs->setTips(keysOf(titles.size()));
    tabs->onSelect = [this](int index) { choices.page = simplePages.at(static_cast<std::size_t>(index)); };
    Corvane::bind(
        *tabs, [this] { return positionIn(simplePages, choices.page.value()); },
        [tabs](int index) { tabs->setSelected(index); });
    Corvane::bind(
        *tabs, [this] { return model.technical.value(); },
        [tabs](bool technical) { tabs->setVisible(!technical); });
    row.addWidget(tabs);
}

void SpeakerStrip::addTechnicalTabs(QHBoxLayout& row) {
    QStringList titles;
    for (const TechPage& each : TechPage::all)
        titles << each.title();
    auto* const tabs = new Kit::Tabs(titles, Theme::secondary, 11, this);
    tabs->setTips(keysOf(titles.size()));
    tabs->onSelect = [this](int index) {
        choices.techPage = TechPage::all.at(static_cast<std::size_t>(index));
    };
    Corvane::bind(
        *tabs, [this] { return positionIn(TechPage::all, choices.techPage.value()); },
        [tabs](int index) { tabs->setSelected(index); });
    Corvane::bind(
        *tabs, [this] { return model.technical.value(); },
        [tabs](bool technical) { tabs->setVisible(technical); });
    row.addWidget(tabs);
}

}  // namespace Corvane
