#pragma once

#include "ui/kit/valuecontrol.hpp"

#include <QObject>
#include <QProperty>

#include <concepts>
#include <type_traits>
#include <utility>

namespace Kit {

/// Keeps a view at what an expression over observable fields says, as long as `owner` lives: `show`
/// is called now, and whenever a field that the expression has read changes its result.
template <class Read, class Show>
void bind(QObject& owner, Read read, Show show) {
    using Value = std::invoke_result_t<Read&>;
    class Binding final : public QObject {
    public:
        Binding(QObject* owner, Read read, Show show)
            : QObject(owner)
            , show(std::move(show)) {
            value.setBinding(std::move(read));
            notifier = value.addNotifier([this] { this->show(value.value()); });
            this->show(value.value());
        }

    private:
        Show show;
        QProperty<Value> value;
        QPropertyNotifier notifier;
    };
    new Binding(&owner, std::move(read), std::move(show));
}

/// The control shows that number, and writes it so.
template <std::derived_from<ValueControl> Number, class Read, class Write>
void bind(Number& control, Read read, Write write) {
    control.onChange = std::move(write);
    bind(
        static_cast<QObject&>(control), [read] { return static_cast<double>(read()); },
        [&control](double value) { control.setValue(value); });
}

}  // namespace Kit
