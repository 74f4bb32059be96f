#include "ui/pages/technical/routingpanel.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/modulesetting.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/growing.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/roving.hpp"
#include "ui/kit/shadows.hpp"

#include <QGridLayout>
#include <QPainter>

#include <utility>
#include <vector>

namespace Corvane {

using namespace Wendril;

namespace {

// A recess round the matrix, on which its dim headings can be read.
class Field final : public QWidget, public Kit::Growing {
public:
    using QWidget::QWidget;

    void setGrowth(double factor) override { growth = factor; }

protected:
    void paintEvent(QPaintEvent*) override {
        constexpr double cornerRadius = 14;
        QPainter painter(this);
        painter.scale(growth, growth);
        const QRectF area(QPointF(), QSizeF(size()) / growth);
        Paint::cached(painter, QStringLiteral("matrix"), area,
                      [&](QPainter& canvas) { Paint::recess(canvas, area, cornerRadius, 0.3, 0.22); });
    }

private:
    double growth = 1;
};

Kit::Caption* heading(const QString& text, QWidget* parent) {
    return new Kit::Caption(text, Theme::font(11, QFont::Normal, 1.5), Theme::secondary, parent);
}

Kit::LampSwitch* crosspoint(AppModel& model, std::string_view input, std::string_view output,
                            const QString& name, QWidget* parent) {
    const ModuleSetting<MixerValue> mixer(model, ModuleKind::mixer,
                                          std::string(input) + "-" + std::string(output));
    auto* const button = new Kit::LampSwitch(name, parent);
    button->action = [&model, mixer, input, output] { model.setRoute(input, output, mixer.value().mute); };
    Corvane::bind(
        *button, [mixer] { return !mixer.value().mute; }, [button](bool routed) { button->setOn(routed); });
    return button;
}

}  // namespace

RoutingPanel::RoutingPanel(AppModel& model, QWidget* parent)
    : Panel(QStringLiteral("ROTEAMENTO"), parent) {
    auto* const field = new Field(this);
    auto* const grid = new QGridLayout(field);
    std::vector<Kit::Control*> switches;
    grid->setContentsMargins(18, 14, 18, 14);
    grid->setSpacing(10);
    for (int i = 0; i < static_cast<int>(K7Q::inputs.size()); ++i) {
        grid->setColumnStretch(i + 1, 1);
        grid->addWidget(heading(QStringLiteral("IN %1").arg(i + 1), field), 0, i + 1, Qt::AlignCenter);
    }
    for (int o = 0; o < static_cast<int>(K7Q::outputs.size()); ++o) {
        grid->setRowStretch(o + 1, 1);
        grid->addWidget(heading(QStringLiteral("OUT %1").arg(o + 1), field), o + 1, 0, Qt::AlignVCenter);
        for (int i = 0; i < static_cast<int>(K7Q::inputs.size()); ++i) {
            const QString name = QStringLiteral("IN %1 → OUT %2").arg(i + 1).arg(o + 1);
            switches.push_back(crosspoint(model, K7Q::inputs.at(static_cast<std::size_t>(i)),
                                          K7Q::outputs.at(static_cast<std::size_t>(o)), name, field));
            grid->addWidget(switches.back(), o + 1, i + 1, Qt::AlignCenter);
        }
    }
    content().addWidget(field, 1);
    (new Kit::Roving(static_cast<int>(K7Q::inputs.size()), Kit::Roving::Choice::stays, this))
        ->setControls(std::move(switches));
}

}  // namespace Corvane
