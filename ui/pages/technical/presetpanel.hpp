#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/textfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include "Wendril/limits.hpp"

#include <QPointer>

#include <cstdint>
#include <optional>

namespace Corvane {

/// The presets stored in the speakers. The panel asks for the list when it is shown and whenever the
/// focused speaker changes. When the list arrives and the speaker reports a current preset, the
/// panel selects that one, unless the user has chosen a slot or typed a name meanwhile.
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
    static Wendril::Task<void> refresh(QPointer<PresetPanel> panel, std::uint64_t generation,
                                       Wendril::Task<void> listing);

    AppModel& model;
    Property<int> slot{Wendril::firstPresetSlot};
    // Counts listings, choices and typing: a list selects a slot only if nothing has followed it.
    std::uint64_t generation = 0;
    Kit::WellMenu<int>* menu;
    Kit::TextField* name;
};

}  // namespace Corvane
