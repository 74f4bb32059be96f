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
#include <vector>

namespace Corvane {

/// The presets stored in the speakers. The panel asks for the list when it is shown and whenever the
/// focused speaker changes. When the list arrives and the speaker reports a current preset, the
/// panel selects that one, unless the user has chosen a slot or typed a name meanwhile. While the
/// speakers load, save or delete a preset, the buttons are off. Return in the name saves.
class PresetPanel final : public Kit::Panel {
public:
    /// By which the field for the name of a preset is found.
    static constexpr const char* nameFieldName = "presetName";

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
    void run(Wendril::Task<void> command);
    void releaseFocus(const std::vector<Kit::PillButton*>& buttons);
    void returnFocus();
    static Wendril::Task<void> run(QPointer<PresetPanel> panel, std::uint64_t generation,
                                   Wendril::Task<void> command);
    static Wendril::Task<void> refresh(QPointer<PresetPanel> panel, std::uint64_t generation,
                                       Wendril::Task<void> listing);

    AppModel& model;
    Property<int> slot{Wendril::firstPresetSlot};
    // Counts listings, choices and typing: a list selects a slot only if nothing has followed it.
    std::uint64_t generation = 0;
    QPointer<QWidget> released;  // the button that had the focus when the work began
    Kit::WellMenu<int>* menu;
    Kit::TextField* name;
};

}  // namespace Corvane
