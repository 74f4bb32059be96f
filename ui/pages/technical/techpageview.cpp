#include "ui/pages/technical/techpageview.hpp"

#include "ui/pages/simple/dynamicsview.hpp"
#include "ui/pages/technical/techchannelview.hpp"
#include "ui/pages/technical/techcrossoverview.hpp"
#include "ui/pages/technical/techmainview.hpp"

#include <QStackedLayout>

#include <algorithm>

namespace Corvane {

using namespace Wendril;

TechPageView::TechPageView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , model(model)
    , stack(new QStackedLayout(this)) {}

void TechPageView::setPage(const TechPage& page) {
    const auto* const found = std::ranges::find(TechPage::all, page);
    if (found == TechPage::all.end()) return;
    QWidget*& view = built.at(static_cast<std::size_t>(found - TechPage::all.begin()));
    if (!view) {
        view = build(page);
        stack->addWidget(view);
    }
    stack->setCurrentWidget(view);
}

QWidget* TechPageView::build(const TechPage& page) {
    const auto channel = static_cast<std::size_t>(page.channel);
    switch (page.kind) {
    case TechPage::Kind::main:
        return new TechMainView(model, this);
    case TechPage::Kind::limiter:
        return new DynamicsView(model, this);
    case TechPage::Kind::input:
        return new TechChannelView(model, K7Q::inputs.at(channel),
                                   QStringLiteral("ENTRADA %1").arg(page.channel + 1), this);
    case TechPage::Kind::output:
        return new TechChannelView(model, K7Q::outputs.at(channel),
                                   QStringLiteral("SAÍDA %1").arg(page.channel + 1), this);
    case TechPage::Kind::crossover:
        return new TechCrossoverView(model, this);
    }
    return nullptr;
}

}  // namespace Corvane
