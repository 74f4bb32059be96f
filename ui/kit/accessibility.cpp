#include "ui/kit/accessibility.hpp"

#include "ui/kit/announcer.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/group.hpp"
#include "ui/kit/pagestack.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/parts.hpp"
#include "ui/kit/tabs.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace Kit {

namespace {

constexpr const char* contextProperty = "spokenContext";
constexpr const char* roleProperty = "spokenRole";

bool isTab(const Control& control) { return control.accessibleRole() == QAccessible::PageTab; }

bool isCheckable(const Control& control) {
    const QAccessible::Role role = control.accessibleRole();
    return role == QAccessible::CheckBox || role == QAccessible::RadioButton;
}

class AccessibleControl : public QAccessibleWidget {
public:
    explicit AccessibleControl(Control* control)
        : QAccessibleWidget(control, control->accessibleRole())
        , control(control) {}

    QAccessible::Role role() const override { return control->accessibleRole(); }

    // Some screen readers do not ask for the value as text, but all read the description.
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return fullName(*control);
        const bool isValue = kind == QAccessible::Value ||
                             (kind == QAccessible::Description && !control->spokenText().isEmpty());
        const QString text = isValue ? control->spokenText() : QAccessibleWidget::text(kind);
        return text == control->accessibleName() ? QString() : text;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = isCheckable(*control);
        state.checked = isCheckable(*control) && control->isChecked();
        state.selectable = isTab(*control);
        state.selected = isTab(*control) && control->isChecked();
        return state;
    }

    QStringList actionNames() const override { return QAccessibleWidget::actionNames() + ownActions(); }

    void doAction(const QString& name) override {
        if (!ownActions().contains(name)) return QAccessibleWidget::doAction(name);
        if (control->isEnabled()) act(name);
    }

protected:
    virtual QStringList ownActions() const {
        switch (control->accessibleRole()) {
        case QAccessible::Graphic:
        case QAccessible::ProgressBar:
        case QAccessible::StaticText:
            return {};
        default:
            return {isCheckable(*control) ? toggleAction() : pressAction()};
        }
    }
    virtual void act(const QString& /*name*/) { control->activate(); }

private:
    Control* const control;
};

class AccessibleValueControl final : public AccessibleControl, public QAccessibleValueInterface {
public:
    explicit AccessibleValueControl(ValueControl* control)
        : AccessibleControl(control)
        , control(control) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return AccessibleControl::interface_cast(type);
    }

    QVariant currentValue() const override { return control->shownNumber(control->value()); }
    void setCurrentValue(const QVariant& value) override {
        control->propose(control->fromShown(value.toDouble()));
    }
    QVariant maximumValue() const override { return control->shownNumber(control->range.upper); }
    QVariant minimumValue() const override { return control->shownNumber(control->range.lower); }

    // On an uneven scale, that of the next step up or, at its end, the one down.
    QVariant minimumStepSize() const override {
        const double value = control->value();
        const double by = control->stepSize() * (value + control->stepSize() > control->range.upper ? -1 : 1);
        return std::abs(control->shownNumber(value + by) - control->shownNumber(value));
    }

protected:
    QStringList ownActions() const override { return {increaseAction(), decreaseAction()}; }
    void act(const QString& name) override { control->moveBySteps(name == increaseAction() ? 1 : -1); }

private:
    ValueControl* const control;
};

// A band of a graph or an entry of a menu.
class AccessiblePart final : public QAccessibleInterface,
                             public QAccessibleActionInterface,
                             public QAccessibleValueInterface {
public:
    AccessiblePart(Control* owner, Parts& parts, int index)
        : owner(owner)
        , parts(parts)
        , index(index) {}

    bool isValid() const override { return owner && index < parts.partCount(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return owner ? owner->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(owner); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        if (!isValid()) return {};
        const QRect place = part().place;
        return place.isEmpty() ? QRect() : QRect(owner->mapToGlobal(place.topLeft()), place.size());
    }

    QAccessible::Role role() const override {
        return isValid() && isNumber() ? QAccessible::Slider : QAccessible::ListItem;
    }

    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        if (kind == QAccessible::Name) return part().name;
        return kind == QAccessible::Value || kind == QAccessible::Description ? part().value : QString();
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.disabled = !owner->isEnabled();
        state.invisible = !owner->isVisible();
        state.focusable = isNumber();
        state.focused = isNumber() && part().isCurrent && owner->hasFocus();
        state.selectable = !isNumber();
        state.selected = !isNumber() && part().isCurrent;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
        if (type == QAccessible::ValueInterface && isValid() && isNumber())
            return static_cast<QAccessibleValueInterface*>(this);
        return nullptr;
    }

    QStringList actionNames() const override {
        if (!isValid() || !owner->isEnabled()) return {};
        if (!isNumber()) return {pressAction()};
        return {setFocusAction(), increaseAction(), decreaseAction()};
    }

    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) return;
        if (name == increaseAction()) return propose(part().number.value_or(0) + parts.partStep());
        if (name == decreaseAction()) return propose(part().number.value_or(0) - parts.partStep());
        if (name == setFocusAction()) owner->setFocus(Qt::OtherFocusReason);
        parts.choosePart(index);
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    QVariant currentValue() const override { return part().number.value_or(0); }
    void setCurrentValue(const QVariant& value) override { propose(value.toDouble()); }
    QVariant maximumValue() const override { return parts.partRange().upper; }
    QVariant minimumValue() const override { return parts.partRange().lower; }
    QVariant minimumStepSize() const override { return parts.partStep(); }

private:
    Parts::Part part() const { return parts.part(index); }
    bool isNumber() const { return part().number.has_value(); }

    void propose(double number) {
        const Range range = parts.partRange();
        if (isValid() && owner->isEnabled() && !std::isnan(number))
            parts.proposePart(index, std::clamp(number, range.lower, range.upper));
    }

    const QPointer<Control> owner;
    Parts& parts;
    const int index;
};

// The interfaces of the parts belong to the toolkit and are removed with the control's.
class AccessibleWithParts final : public AccessibleControl {
public:
    AccessibleWithParts(Control* control, Parts* parts)
        : AccessibleControl(control)
        , control(control)
        , parts(parts) {}

    ~AccessibleWithParts() override {
        for (const QAccessible::Id id : children)
            QAccessible::deleteAccessibleInterface(id);
    }
    AccessibleWithParts(const AccessibleWithParts&) = delete;
    AccessibleWithParts& operator=(const AccessibleWithParts&) = delete;

    int childCount() const override { return parts->partCount(); }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        while (children.size() <= static_cast<std::size_t>(index)) {
            auto part = std::make_unique<AccessiblePart>(control, *parts, static_cast<int>(children.size()));
            children.push_back(QAccessible::registerAccessibleInterface(part.release()));
        }
        return QAccessible::accessibleInterface(children[static_cast<std::size_t>(index)]);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        for (std::size_t i = 0; i < children.size(); ++i)
            if (QAccessible::accessibleInterface(children[i]) == child) return static_cast<int>(i);
        return -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (QAccessibleInterface* const each = child(i); each && each->rect().contains(x, y)) return each;
        return nullptr;
    }

    QAccessibleInterface* focusChild() const override {
        for (int i = 0; i < childCount(); ++i)
            if (QAccessibleInterface* const each = child(i); each && each->state().focused) return each;
        return AccessibleControl::focusChild();
    }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        if (role() == QAccessible::ComboBox) {
            state.expandable = true;
            state.expanded = control->isExpanded();
            state.collapsed = !control->isExpanded();
            state.hasPopup = true;
        }
        return state;
    }

protected:
    QStringList ownActions() const override {
        if (role() != QAccessible::ComboBox) return {};
        return {showMenuAction()};
    }

private:
    Control* const control;
    Parts* const parts;
    mutable std::vector<QAccessible::Id> children;
};

class AccessibleCaption final : public QAccessibleWidget {
public:
    explicit AccessibleCaption(Caption* caption)
        : QAccessibleWidget(caption, QAccessible::StaticText)
        , caption(caption) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? fullName(*caption) : QAccessibleWidget::text(kind);
    }

private:
    Caption* const caption;
};

class AccessiblePercentage final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessiblePercentage(Percentage* percentage)
        : QAccessibleWidget(percentage, QAccessible::ProgressBar)
        , percentage(percentage) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? percentage->shownText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return std::round(100 * percentage->fraction()); }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return 100; }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    Percentage* const percentage;
};

class AccessiblePageStack final : public QAccessibleWidget {
public:
    explicit AccessiblePageStack(PageStack* stack)
        : QAccessibleWidget(stack, QAccessible::LayeredPane)
        , stack(stack) {}

    int childCount() const override { return stack->isCovered() ? 0 : QAccessibleWidget::childCount(); }
    QAccessibleInterface* child(int index) const override {
        return stack->isCovered() ? nullptr : QAccessibleWidget::child(index);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return stack->isCovered() ? nullptr : QAccessibleWidget::childAt(x, y);
    }

private:
    PageStack* const stack;
};

// Screen readers look for a frame or a dialog around all that they read.
QAccessibleInterface* plainWidget(QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    if (!widget) return nullptr;
    if (const QVariant role = widget->property(roleProperty); role.isValid())
        return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
    if (!widget->isWindow()) return nullptr;
    const bool isDialog = widget->windowType() == Qt::Dialog;
    return new QAccessibleWidget(widget, isDialog ? QAccessible::Dialog : QAccessible::Window);
}

QAccessibleInterface* interfaceOf(const QString& kind, QObject* object) {
    if (auto* const value = dynamic_cast<ValueControl*>(object)) return new AccessibleValueControl(value);
    if (auto* const control = dynamic_cast<Control*>(object)) {
        if (auto* const parts = dynamic_cast<Parts*>(object)) return new AccessibleWithParts(control, parts);
        return new AccessibleControl(control);
    }
    if (auto* const tabs = dynamic_cast<Tabs*>(object))
        return new QAccessibleWidget(tabs, QAccessible::PageTabList, tabs->accessibleName());
    if (auto* const percentage = dynamic_cast<Percentage*>(object))
        return new AccessiblePercentage(percentage);
    if (auto* const caption = dynamic_cast<Caption*>(object)) return new AccessibleCaption(caption);
    if (auto* const panel = dynamic_cast<Panel*>(object))
        return new QAccessibleWidget(panel, QAccessible::Grouping);
    if (auto* const group = dynamic_cast<Group*>(object))
        return new QAccessibleWidget(group, QAccessible::Grouping);
    if (auto* const announcement = dynamic_cast<Announcement*>(object))
        return new QAccessibleWidget(announcement, QAccessible::Notification);
    if (auto* const stack = dynamic_cast<PageStack*>(object)) return new AccessiblePageStack(stack);
    return kind == QStringLiteral("QWidget") ? plainWidget(object) : nullptr;
}

bool isTold(const Control& control) { return QAccessible::isActive() && control.isVisible(); }

void tellState(Control& control, QAccessible::State changed) {
    QAccessibleStateChangeEvent event(&control, changed);
    QAccessible::updateAccessibility(&event);
}

QAccessibleInterface* partOf(Control& control, int part) {
    QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(&control);
    return whole ? whole->child(part) : nullptr;
}

}  // namespace

void installAccessibility() { QAccessible::installFactory(interfaceOf); }

void setRole(QWidget& widget, QAccessible::Role role) {
    widget.setProperty(roleProperty, static_cast<int>(role));
}

void setContext(QWidget& part, const QStringList& context) { part.setProperty(contextProperty, context); }

QString fullName(const QWidget& widget) {
    const auto* const caption = dynamic_cast<const Caption*>(&widget);
    QStringList names{caption ? caption->shownText() : widget.accessibleName()};
    if (!caption)
        for (const QWidget* each = &widget; each; each = each->parentWidget())
            names = each->property(contextProperty).toStringList() + names;
    names.removeDuplicates();
    return names.join(QStringLiteral(", "));
}

// The toolkit passes on a change of "selected" only as an event of its own.
void notifyValueChanged(Control& control) {
    if (!isTold(control)) return;
    switch (control.accessibleRole()) {
    case QAccessible::CheckBox:
    case QAccessible::RadioButton: {
        QAccessible::State changed;
        changed.checked = true;
        return tellState(control, changed);
    }
    case QAccessible::PageTab: {
        QAccessibleEvent event(&control,
                               control.isChecked() ? QAccessible::Selection : QAccessible::SelectionRemove);
        return QAccessible::updateAccessibility(&event);
    }
    case QAccessible::Dial:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::ComboBox: {
        QAccessibleValueChangeEvent event(&control, control.spokenText());
        return QAccessible::updateAccessibility(&event);
    }
    default:
        return;
    }
}

void notifyPartChanged(Control& control, int part) {
    if (!isTold(control)) return;
    QAccessibleInterface* const changed = partOf(control, part);
    if (!changed) return;
    QAccessibleValueChangeEvent event(changed, changed->text(QAccessible::Value));
    QAccessible::updateAccessibility(&event);
}

void notifyPartFocused(Control& control, int part) {
    if (!isTold(control)) return;
    QAccessibleInterface* const focused = partOf(control, part);
    if (!focused) return;
    QAccessibleEvent event(focused, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void notifyExpanded(Control& control) {
    if (!isTold(control)) return;
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    tellState(control, changed);
}

}  // namespace Kit
