#include "ui/kit/accessibility.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/control.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/tabs.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QAccessible>
#include <QAccessibleWidget>

namespace Kit {

namespace {

bool isTab(const Control& control) { return control.accessibleRole() == QAccessible::PageTab; }

class AccessibleControl : public QAccessibleWidget {
public:
    explicit AccessibleControl(Control* control)
        : QAccessibleWidget(control, control->accessibleRole())
        , control(control) {}

    // Some screen readers do not ask for the value as text, but all read the description.
    QString text(QAccessible::Text kind) const override {
        const bool isValue = kind == QAccessible::Value ||
                             (kind == QAccessible::Description && !control->valueText().isEmpty());
        return isValue ? control->valueText() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = control->isCheckable();
        state.checked = control->isCheckable() && control->isChecked();
        state.selectable = isTab(*control);
        state.selected = isTab(*control) && control->isChecked();
        return state;
    }

    QStringList actionNames() const override {
        return {control->isCheckable() ? toggleAction() : pressAction()};
    }

    void doAction(const QString& name) override {
        if (actionNames().contains(name)) control->activate();
    }

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

    QStringList actionNames() const override { return {increaseAction(), decreaseAction()}; }

    void doAction(const QString& name) override {
        if (name == increaseAction()) control->moveBySteps(1);
        if (name == decreaseAction()) control->moveBySteps(-1);
    }

    QVariant currentValue() const override { return control->value(); }
    void setCurrentValue(const QVariant& value) override { control->propose(value.toDouble()); }
    QVariant maximumValue() const override { return control->range.upper; }
    QVariant minimumValue() const override { return control->range.lower; }
    QVariant minimumStepSize() const override { return control->stepSize(); }

private:
    ValueControl* const control;
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    if (auto* const value = dynamic_cast<ValueControl*>(object)) return new AccessibleValueControl(value);
    if (auto* const control = dynamic_cast<Control*>(object)) return new AccessibleControl(control);
    if (auto* const tabs = dynamic_cast<Tabs*>(object))
        return new QAccessibleWidget(tabs, QAccessible::PageTabList);
    if (auto* const caption = dynamic_cast<Caption*>(object))
        return new QAccessibleWidget(caption, QAccessible::StaticText);
    if (auto* const panel = dynamic_cast<Panel*>(object))
        return new QAccessibleWidget(panel, QAccessible::Grouping);
    return nullptr;
}

}  // namespace

void installAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
    static_cast<void>(installed);
}

void notifyValueChanged(Control& control) {
    if (!QAccessible::isActive()) return;
    if (control.isCheckable() || isTab(control)) {
        QAccessible::State changed;
        changed.checked = control.isCheckable();
        changed.selected = isTab(control);
        QAccessibleStateChangeEvent event(&control, changed);
        return QAccessible::updateAccessibility(&event);
    }
    QAccessibleValueChangeEvent event(&control, control.valueText());
    QAccessible::updateAccessibility(&event);
}

}  // namespace Kit
