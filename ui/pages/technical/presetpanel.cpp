#include "ui/pages/technical/presetpanel.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "Wendril/limits.hpp"

#include <QTextBoundaryFinder>

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

// As many whole letters as a speaker stores.
QString storable(const QString& name) {
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, name);
    qsizetype end = 0;
    for (qsizetype next = 0; next >= 0; next = letters.toNextBoundary()) {
        if (name.left(next).toUtf8().size() > static_cast<qsizetype>(presetNameBytes)) break;
        end = next;
    }
    return name.left(end);
}

}  // namespace

PresetPanel::PresetPanel(AppModel& model, QWidget* parent)
    : Panel(QStringLiteral("PRESETS DA CAIXA"), parent)
    , model(model)
    , menu(new Kit::WellMenu<int>(fieldWidth, this))
    , name(new Kit::TextField(QStringLiteral("Nome do preset"), {fieldWidth, 26}, 12, this)) {
    name->setObjectName(QLatin1String(nameFieldName));
    menu->setAccessibleName(QStringLiteral("Preset"));
    menu->onSelect = [this](int chosen) {
        ++generation;
        choose(chosen);
    };
    connect(name, &QLineEdit::textEdited, this, [this](const QString& typed) {
        ++generation;
        const QString kept = storable(typed);
        if (kept == typed) return;
        const int cursor = name->cursorPosition();
        name->setText(kept);
        name->setCursorPosition(cursor);
    });
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
        run(model.savePreset(slot.value(), toUtf8(chosen)));
    };
    connect(name, &QLineEdit::returnPressed, save, [save] { save->activate(); });
    erase->action = [this] { run(model.deletePreset(slot.value())); };
    Corvane::bind(
        *load, [this] { return model.currentPreset.value() == slot.value(); },
        [load](bool current) { load->setOn(current); });
    Corvane::bind(
        *this,
        [this] {
            return std::pair(model.activity.value().has_value(),
                             model.devicePresets.value().contains(slot.value()));
        },
        [this, load, save, erase](const std::pair<bool, bool>& state) {
            const auto [busy, stored] = state;
            if (busy) releaseFocus({load, save, erase});
            save->setEnabled(!busy);
            load->setEnabled(!busy && stored);
            erase->setEnabled(!busy && stored);
            if (!busy) returnFocus();
        });
    auto* const row = new QHBoxLayout;
    row->setSpacing(4);
    for (Kit::PillButton* const each : {load, save, erase})
        row->addWidget(each);
    return row;
}

// A button that is disabled while it has the focus would give it to another control, where the next key
// would act. It gets the focus back when the work has ended, as it had it: with or without a ring.
void PresetPanel::releaseFocus(const std::vector<Kit::PillButton*>& buttons) {
    for (Kit::PillButton* const each : buttons) {
        if (!each->hasFocus()) continue;
        released = each;
        each->clearFocus();
    }
}

void PresetPanel::returnFocus() {
    const QPointer<QWidget> button = std::exchange(released, nullptr);
    if (button && !window()->focusWidget()) button->setFocus(Qt::PopupFocusReason);
}

// Afterwards the panel shows what the speaker holds.
void PresetPanel::run(Task<void> command) { model.start(run(this, generation, std::move(command))); }

Task<void> PresetPanel::run(QPointer<PresetPanel> panel, std::uint64_t generation, Task<void> command) {
    co_await std::move(command);
    if (panel && panel->generation == generation) panel->choose(panel->slot.value());
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
    if (name->hasFocus()) name->selectAll();  // what is typed replaces it
}

QString PresetPanel::storedName(int slot) const {
    const Names& names = model.devicePresets.value();
    const auto stored = names.find(slot);
    return stored == names.end() ? QString() : toQString(stored->second);
}

}  // namespace Corvane
