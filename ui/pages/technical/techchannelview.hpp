#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QString>

#include <string_view>

namespace Corvane {

/// The settings of one channel: gain, equaliser, dynamics and delay, and the crossover of an output.
class TechChannelView final : public Kit::Surface {
public:
    TechChannelView(AppModel& model, std::string_view channel, QString title, QWidget* parent);

private:
    QWidget* gainPanel();
    QWidget* equaliserPanel();
    Kit::EQGraph* graph(QWidget* parent);
    QLayout* table(QWidget* parent);
    QLayout* equaliserButtons(QWidget* parent);
    QLayout* filterRows(QWidget* parent);
    QWidget* compressorPanel();
    QWidget* gatePanel();
    QWidget* delayPanel();
    void addKnobs(Kit::Panel& panel, Wendril::ModuleKind kind, const Kit::ValueControl::Format& format);

    AppModel& model;
    const std::string_view channel;
    const QString title;
};

}  // namespace Corvane
