#include "ui/pages/shell/speakerstrip.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shell/speakerchips.hpp"
#include "ui/pages/shell/statuslabel.hpp"

#include "ui/kit/iconbutton.hpp"
#include "ui/kit/theme.hpp"

#include <QHBoxLayout>

#include <algorithm>

namespace Corvane {

namespace {

constexpr QMargins margins(32, 14, 32, 0);

template <class List, class Value>
int positionIn(const List& list, const Value& value) {
    return static_cast<int>(std::ranges::find(list, value) - list.begin());
}

}  // namespace

SpeakerStrip::SpeakerStrip(AppModel& model, Property<Page>& page, Property<TechPage>& techPage,
                           QWidget* parent)
    : QWidget(parent)
    , model(model)
    , page(page)
    , techPage(techPage) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(margins);
    row->setSpacing(12);
    row->addWidget(new SpeakerChips(model, this));
    addSearchButton(*row);
    row->addWidget(new StatusLabel(model, this));
    row->addStretch(1);
    addSimpleTabs(*row);
    addTechnicalTabs(*row);
}

void SpeakerStrip::addSearchButton(QHBoxLayout& row) {
    auto* const button = new Kit::IconButton(QStringLiteral("dot.radiowaves.left.and.right"),
                                             QStringLiteral("Procurar e renumerar as caixas"), 18, this);
    button->action = [this] { model.start(model.discover(true)); };
    Corvane::bind(
        *button, [this] { return model.status.value().isOnline(); },
        [button](bool online) { button->setEnabled(online); });
    row.addWidget(button);
}

void SpeakerStrip::addSimpleTabs(QHBoxLayout& row) {
    QStringList titles;
    for (const Page each : simplePages)
        titles << titleOf(each);
    auto* const tabs = new Kit::Tabs(titles, Theme::text, 18, this);
    tabs->onSelect = [this](int index) { page = simplePages.at(static_cast<std::size_t>(index)); };
    Corvane::bind(
        *tabs, [this] { return positionIn(simplePages, page.value()); },
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
    tabs->onSelect = [this](int index) { techPage = TechPage::all.at(static_cast<std::size_t>(index)); };
    Corvane::bind(
        *tabs, [this] { return positionIn(TechPage::all, techPage.value()); },
        [tabs](int index) { tabs->setSelected(index); });
    Corvane::bind(
        *tabs, [this] { return model.technical.value(); },
        [tabs](bool technical) { tabs->setVisible(technical); });
    row.addWidget(tabs);
}

}  // namespace Corvane
