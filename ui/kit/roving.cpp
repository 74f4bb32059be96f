#include "ui/kit/roving.hpp"

#include "ui/kit/control.hpp"

#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace Kit {

namespace {

bool isUsable(const Control& control) { return control.isEnabled() && !control.isHidden(); }

bool isChosen(const Control& control) {
    const QAccessible::Role role = control.accessibleRole();
    return control.isChecked() && (role == QAccessible::RadioButton || role == QAccessible::PageTab);
}

}  // namespace

Roving::Roving(int columns, Choice choice, QObject* owner)
    : QObject(owner)
    , columns(columns)
    , choice(choice) {}

void Roving::setControls(std::vector<Control*> list) {
    for (Control* const each : controls) {
        each->removeEventFilter(this);
        disconnect(each, nullptr, this, nullptr);
    }
    if (std::ranges::count(list, stop) == 0) stop = nullptr;
    controls = std::move(list);
    for (Control* const each : controls) {
        each->installEventFilter(this);
        connect(each, &QObject::destroyed, this, [this, each] {
            std::erase(controls, each);
            if (stop == each) settle(nullptr);
        });
    }
    settle(stop);
}

int Roving::columnCount() const { return columns > 0 ? columns : static_cast<int>(controls.size()); }

Control* Roving::chosen() const {
    const auto found = std::ranges::find_if(
        controls, [](const Control* each) { return isChosen(*each) && isUsable(*each); });
    return found == controls.end() ? nullptr : *found;
}

// The others can still be reached by the mouse and by screen readers.
void Roving::settle(Control* wanted) {
    if (!wanted || !isUsable(*wanted)) {
        const auto usable =
            std::ranges::find_if(controls, [](const Control* each) { return isUsable(*each); });
        wanted = usable == controls.end() ? nullptr : *usable;
    }
    stop = wanted;
    for (Control* const each : controls)
        each->setFocusPolicy(each == stop ? Qt::StrongFocus : Qt::ClickFocus);
}

// In a single row the vertical arrows do what the horizontal ones do.
Control* Roving::neighbour(const Control& from, int key) const {
    const int count = static_cast<int>(controls.size());
    const int width = columnCount();
    const bool isRow = width >= count;
    const bool back = key == Qt::Key_Left || key == Qt::Key_Up;
    const bool along = key == Qt::Key_Left || key == Qt::Key_Right || isRow;
    const int by = (back ? -1 : 1) * (along ? 1 : width);
    const int start = static_cast<int>(std::ranges::find(controls, &from) - controls.begin());
    for (int next = start + by; next >= 0 && next < count; next += by) {
        if (along && next / width != start / width) break;
        Control* const reached = controls[static_cast<std::size_t>(next)];
        if (isUsable(*reached)) return reached;
    }
    return nullptr;
}

bool Roving::eventFilter(QObject* watched, QEvent* event) {
    const auto found = std::ranges::find(controls, watched);
    if (found == controls.end()) return false;
    Control& control = **found;
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool isArrow = key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down;
        if (!isArrow || (key.modifiers() & ~Qt::KeypadModifier) != 0) return false;
        if (Control* const next = neighbour(control, key.key())) {
            next->setFocus(Qt::OtherFocusReason);
            if (choice == Choice::moves) next->activate();
        }
        return true;
    }
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        const bool byTab = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
        Control* const current = chosen();
        if (byTab && current && current != &control) {
            current->setFocus(reason);
            return true;
        }
        settle(&control);
        return false;
    }
    case QEvent::HideToParent:
    case QEvent::ShowToParent:
    case QEvent::EnabledChange:
        if (!stop || (&control == stop && !isUsable(control))) settle(stop);
        return false;
    default:
        return false;
    }
}

}  // namespace Kit
