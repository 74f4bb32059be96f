#include "ui/pages/shell/keyboard.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/mutebutton.hpp"
#include "ui/pages/shell/keylist.hpp"
#include "ui/pages/shell/manual.hpp"
#include "ui/pages/technical/presetpanel.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/announcer.hpp"
#include "ui/kit/control.hpp"
#include "ui/kit/taborder.hpp"

#include <QApplication>
#include <QLineEdit>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Corvane {

Keyboard::Keyboard(AppModel& model, const Sections& sections, const SpeakerStrip::Choices& choices,
                   std::function<void()> showDiagnostics)
    : QObject(&sections.view)
    , model(model)
    , sections(sections)
    , choices(choices) {
    qApp->installEventFilter(this);
    addShortcuts(showDiagnostics);
    followFocus();
}

// Repeated events of a held key toggle nothing.
void Keyboard::add(const QList<QKeySequence>& keys, Act act, bool repeats) {
    for (const QKeySequence& each : keys) {
        auto* const shortcut = new QShortcut(each, &sections.view);
        shortcut->setAutoRepeat(repeats);
        connect(shortcut, &QShortcut::activated, this, act);
        shortcuts.push_back(shortcut);
    }
}

void Keyboard::addShortcuts(const std::function<void()>& showDiagnostics) {
    constexpr bool repeats = true;
    const auto undo = [this] {
        if (!choices.locked.value()) model.undo();
    };
    const auto redo = [this] {
        if (!choices.locked.value()) model.redo();
    };
    add({Qt::CTRL | Qt::Key_Z}, undo, repeats);
    add({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}, redo, repeats);
    add({Qt::CTRL | Qt::Key_L}, [this] { choices.locked = !choices.locked.value(); });
    add({Qt::CTRL | Qt::Key_R}, [this] { model.start(model.readAgain()); });
    add({Qt::CTRL | Qt::SHIFT | Qt::Key_D}, showDiagnostics);
    add({Qt::Key_F1}, [this] { listKeys(); });
    add({Qt::Key_F6}, [this] { focusNextSection(1); });
    add({Qt::SHIFT | Qt::Key_F6}, [this] { focusNextSection(-1); });
    add(
        {Qt::CTRL | Qt::Key_PageUp}, [this] { turnPage(-1); }, repeats);
    add(
        {Qt::CTRL | Qt::Key_PageDown}, [this] { turnPage(1); }, repeats);
    add({Qt::CTRL | Qt::Key_S}, [this] { namePreset(); });
    add({Qt::Key_M}, [this] { mute(); });
    add({Qt::Key_Escape}, [this] { model.target = std::nullopt; });
    for (int digit = 0; digit <= 9; ++digit) {
        const auto key = static_cast<Qt::Key>(Qt::Key_0 + digit);
        if (digit > 0) add({Qt::CTRL | key}, [this, digit] { choosePage(digit - 1); });
        add({Qt::ALT | key}, [this, digit] { target(digit); });
    }
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (QShortcut* const each : shortcuts)
            each->setEnabled(!qobject_cast<QLineEdit*>(now));
    });
}

// Each rule acts only when nothing has the focus: a control that the user has gone to keeps it.
void Keyboard::followFocus() {
    QWidget& connectButton = sections.header.connectButton();
    Corvane::bind(
        *this, [this] { return model.status.value().state; },
        [this, &connectButton](Status::Case state) {
            QWidget* const focused = QApplication::focusWidget();
            const bool isOnline = state == Status::Case::online;
            sections.pages.setCovered(!isOnline);
            if (focused && !(isOnline && focused == &connectButton)) return;
            if (isOnline)
                giveFirst(sections.strip);
            else
                give(&connectButton);
        });
    Corvane::bind(
        *this, [this] { return model.technical.value(); },
        [this](bool technical) {
            if (!technical && !QApplication::focusWidget() && sections.view.isVisible())
                give(&sections.header.logo());
        });
    Corvane::bind(
        *this, [this] { return choices.locked.value(); },
        [this](bool locked) {
            if (QApplication::focusWidget() || !sections.view.isVisible()) return;
            if (locked)
                give(&sections.strip.padlock());
            else
                give(std::exchange(beforeLock, nullptr));
        });
}

QWidget& Keyboard::pageArea() const {
    return model.status.value().isOnline() ? static_cast<QWidget&>(sections.pages) : sections.cover;
}

bool Keyboard::isIn(const QWidget& section, const QWidget* widget) const {
    return widget && (widget == &section || section.isAncestorOf(widget));
}

// A user of the mouse sees no ring.
void Keyboard::give(QWidget* widget) const {
    if (widget) widget->setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

void Keyboard::giveFirst(QWidget& section) const {
    const std::vector<QWidget*> order = Kit::tabOrder(section);
    if (!order.empty()) give(order.front());
}

// The toolkit moves the focus on by itself when the control that has it is hidden or disabled, and the
// next key would act on a control that the user has not chosen.
bool Keyboard::moveFocus(bool forward) {
    if (QWidget* const lost = QApplication::focusWidget();
        lost && (!lost->isVisible() || !lost->isEnabled())) {
        lost->clearFocus();
        if (model.status.value().isOnline() && isIn(sections.strip, lost)) giveFirst(sections.strip);
        return true;
    }
    std::vector<QWidget*> order = Kit::tabOrder(sections.header);
    for (QWidget* const section : {static_cast<QWidget*>(&sections.strip), &pageArea()})
        std::ranges::copy(Kit::tabOrder(*section), std::back_inserter(order));
    return Kit::moveFocus(order, forward);
}

void Keyboard::leavePage() {
    QWidget* const focused = QApplication::focusWidget();
    if (!isIn(sections.pages, focused)) return;
    const bool isEditor =
        qobject_cast<QLineEdit*>(focused) && dynamic_cast<Kit::Control*>(focused->parentWidget());
    if (choices.locked.value()) beforeLock = isEditor ? focused->parentWidget() : focused;
    focused->clearFocus();
    if (QWidget* const control = QApplication::focusWidget(); isIn(sections.pages, control))
        control->clearFocus();
}

void Keyboard::focusNextSection(int by) const {
    QWidget* const all[] = {&sections.header, &sections.strip, &pageArea()};
    constexpr int count = std::size(all);
    const auto* const at = std::ranges::find_if(
        all, [this](const QWidget* section) { return isIn(*section, QApplication::focusWidget()); });
    int next = at == std::end(all) ? (by > 0 ? -1 : count) : static_cast<int>(at - std::begin(all));
    for (int tries = 0; tries < count; ++tries) {
        next = (next + by + count) % count;
        const std::vector<QWidget*> order = Kit::tabOrder(*all[next]);
        if (!order.empty()) return order.front()->setFocus(Qt::TabFocusReason);
    }
}

void Keyboard::choosePage(int position) {
    const auto index = static_cast<std::size_t>(position);
    QString title;
    if (model.technical.value() && index < TechPage::all.size()) {
        choices.techPage = TechPage::all.at(index);
        title = TechPage::all.at(index).title();
    } else if (!model.technical.value() && index < simplePages.size()) {
        choices.page = simplePages.at(index);
        title = titleOf(simplePages.at(index));
    }
    if (title.isEmpty()) return;
    Kit::announce(sections.view, QStringLiteral("Página ") + title);
    giveFirst(sections.pages);
}

void Keyboard::turnPage(int by) {
    const bool technical = model.technical.value();
    const auto at = technical
                        ? std::ranges::find(TechPage::all, choices.techPage.value()) - TechPage::all.begin()
                        : std::ranges::find(simplePages, choices.page.value()) - simplePages.begin();
    const auto next = static_cast<int>(at) + by;
    if (next >= 0) choosePage(next);
}

void Keyboard::target(int number) const {
    if (number == 0) {
        model.target = std::nullopt;
        return;
    }
    for (const auto& speaker : model.speakers.value())
        if (speaker->address == number) model.target = speaker->address;
}

void Keyboard::namePreset() {
    if (!model.technical.value() || !sections.pages.isEnabled()) return;
    choices.techPage = TechPage::all.front();
    if (auto* const name = sections.pages.findChild<QWidget*>(QLatin1String(PresetPanel::nameFieldName)))
        name->setFocus(Qt::ShortcutFocusReason);
}

// The mute that stands nearest to what has the focus. Where several are as near, none is meant.
Kit::Control* Keyboard::nearestMute() const {
    const QWidget* part = QApplication::focusWidget();
    for (; part && part != &sections.pages && isIn(sections.pages, part); part = part->parentWidget()) {
        QList<QWidget*> found = part->findChildren<QWidget*>(QLatin1String(muteObjectName));
        if (part->objectName() == QLatin1String(muteObjectName)) found << const_cast<QWidget*>(part);
        if (auto* const elsewhere = part->property(muteProperty).value<QWidget*>()) found << elsewhere;
        found.removeIf([](const QWidget* each) { return !each->isVisible(); });
        if (!found.isEmpty()) return found.size() == 1 ? dynamic_cast<Kit::Control*>(found.front()) : nullptr;
    }
    return nullptr;
}

void Keyboard::mute() const {
    Kit::Control* const button = nearestMute();
    if (!button) return;
    button->activate();
    Kit::announce(sections.view,
                  Kit::fullName(*button) +
                      (button->isChecked() ? QStringLiteral(": ligado") : QStringLiteral(": desligado")));
}

void Keyboard::listKeys() {
    if (!keys) keys = new KeyList([this] { openManual(model); }, &sections.view);
    keys->show();
    keys->raise();
    keys->activateWindow();
}

bool Keyboard::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::KeyPress) byKeyboard = true;
    if (event->type() == QEvent::MouseButtonPress) byKeyboard = false;
    return false;
}

}  // namespace Corvane
