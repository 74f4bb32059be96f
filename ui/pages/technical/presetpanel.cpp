#include "ui/pages/technical/presetpanel.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "Wendril/limits.hpp"

#include <map>
#include <string>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int fieldWidth = 250;

using Names = std::map<int, std::string>;

Kit::WellMenu<int>::Options optionsOf(const Names& names) {
    Kit::WellMenu<int>::Options options;
    for (int slot = firstPresetSlot; slot <= lastPresetSlot; ++slot) {
        const auto stored = names.find(slot);
        const QString title = stored == names.end() ? QStringLiteral("vazio") : toQString(stored->second);
        options.emplace_back(slot, QString::number(slot) + QStringLiteral(" · ") + title);
    }
    return options;
}

}  // namespace

PresetPanel::PresetPanel(AppModel& model, QWidget* parent)
    : Panel(QStringLiteral("PRESETS DA CAIXA"), parent)
    , model(model)
    , menu(new Kit::WellMenu<int>(fieldWidth, this))
    , name(new Kit::TextField(QStringLiteral("Nome do preset"), {fieldWidth, 26}, 12, this)) {
    menu->setAccessibleName(QStringLiteral("Preset"));
    menu->onSelect = [this](int chosen) {
        ++generation;
        choose(chosen);
    };
    connect(name, &QLineEdit::textEdited, this, [this] { ++generation; });
    content().setSpacing(12);
    content().addWidget(menu, 0, Qt::AlignHCenter);
    content().addWidget(name, 0, Qt::AlignHCenter);
    content().addLayout(buttons());
    Corvane::bind(
        *this, [&model] { return model.devicePresets.value(); },
        [this](const Names& names) { menu->setOptions(optionsOf(names)); });
    Corvane::bind(
        *this, [this] { return slot.value(); }, [this](int shown) { menu->setSelection(shown); });
    Corvane::bind(
        *this, [&model] { return model.focus(); },
        [this](const auto&) {
            if (isVisible()) refresh();
        });
    followSpeaker();
}

QLayout* PresetPanel::buttons() {
    const auto button = [this](const QString& title) {
        return new Kit::PillButton(title, Kit::PillButton::Size::compact, this);
    };
    auto* const load = button(QStringLiteral("CARREGAR"));
    auto* const save = button(QStringLiteral("SALVAR"));
    auto* const erase = button(QStringLiteral("APAGAR"));
    load->action = [this] { model.start(model.loadPreset(slot.value())); };
    save->action = [this] {
        const QString chosen =
            name->text().isEmpty() ? QStringLiteral("Preset %1").arg(slot.value()) : name->text();
        model.start(model.savePreset(slot.value(), toUtf8(chosen)));
    };
    erase->action = [this] { model.start(model.deletePreset(slot.value())); };
    Corvane::bind(
        *load, [this] { return model.currentPreset.value() == slot.value(); },
        [load](bool current) { load->setOn(current); });
    Corvane::bind(
        *this, [this] { return model.devicePresets.value().contains(slot.value()); },
        [load, erase](bool stored) {
            load->setEnabled(stored);
            erase->setEnabled(stored);
        });
    auto* const row = new QHBoxLayout;
    row->setSpacing(4);
    for (Kit::PillButton* const each : {load, save, erase})
        row->addWidget(each);
    return row;
}

void PresetPanel::showEvent(QShowEvent* event) {
    Panel::showEvent(event);
    followSpeaker();
    refresh();
}

void PresetPanel::refresh() { model.start(refresh(this, ++generation, model.refreshPresets())); }

Task<void> PresetPanel::refresh(QPointer<PresetPanel> panel, std::uint64_t generation, Task<void> listing) {
    co_await std::move(listing);
    if (panel && panel->generation == generation && panel->currentSlot()) panel->followSpeaker();
}

std::optional<int> PresetPanel::currentSlot() const {
    const int current = model.currentPreset.value().value_or(0);
    return current >= firstPresetSlot && current <= lastPresetSlot ? std::optional(current) : std::nullopt;
}

void PresetPanel::followSpeaker() { choose(currentSlot().value_or(firstPresetSlot)); }

void PresetPanel::choose(int chosen) {
    slot = chosen;
    name->setText(storedName(chosen));
}

QString PresetPanel::storedName(int slot) const {
    const Names& names = model.devicePresets.value();
    const auto stored = names.find(slot);
    return stored == names.end() ? QString() : toQString(stored->second);
}

}  // namespace Corvane
