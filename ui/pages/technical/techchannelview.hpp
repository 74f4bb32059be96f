#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/kit/valuecontrol.hpp"
#include "ui/kit/wellmenu.hpp"
#include "ui/pages/shared/pageview.hpp"

#include <QString>

#include <string_view>
#include <vector>

namespace Corvane {

class ChannelStrip;
class PeqRow;

/// The settings of one channel: gain, equaliser, dynamics and delay, and the crossover of an output.
///
/// While the graph has the focus, Ctrl+C and Ctrl+V copy the selected band, and Ctrl+Shift+C and
/// Ctrl+Shift+V all bands.
class TechChannelView final : public PageView {
public:
    TechChannelView(AppModel& model, std::string_view channel, QString title, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void spend(int height) override;

private:
    QWidget* gainPanel();
    QWidget* equaliserPanel();
    void buildGraph(QWidget* parent);
    QLayout* table(QWidget* parent);
    void linkToGraph(const std::vector<PeqRow*>& rows);
    void copy(bool all);
    void pasteBand();
    void pasteAll();
    QLayout* equaliserButtons(QWidget* parent);
    QLayout* filterRows(QWidget* parent);
    QWidget* compressorPanel();
    QWidget* gatePanel();
    QWidget* delayPanel();
    void addKnobs(Kit::Panel& panel, Wendril::ModuleKind kind, const Kit::ValueControl::Format& format);

    AppModel& model;
    const std::string_view channel;
    const QString title;
    ChannelStrip* strip = nullptr;
    Kit::EQGraph* graph = nullptr;
    std::vector<Kit::MenuButton*> menus;  // of the table and the filters
};

}  // namespace Corvane
