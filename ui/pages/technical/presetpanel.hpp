#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <QPointer>

#include <cstdint>
#include <optional>

namespace Corvane {

/// The presets stored in the speakers. It lists them when it is shown and whenever another speaker
/// is looked at, and then goes to the current one if there is one, unless the user has begun to choose or to
/// type.
class PresetPanel final : public Kit::Panel {
public:
    PresetPanel(AppModel& model, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    std::optional<int> currentSlot() const;
    void followSpeaker();
    void choose(int slot);
    QString storedName(int slot) const;
    QLayout* buttons();
    static Wendril::Task<void> refresh(QPointer<PresetPanel> panel, std::uint64_t turn,
                                       Wendril::Task<void> listing);

    AppModel& model;
    Property<int> slot{1};
    std::uint64_t turn = 0;  // of refreshes and of what the user does; only the latest counts
    Kit::WellMenu<int>* menu;
    Kit::TextField* name;
};

}  // namespace Corvane
