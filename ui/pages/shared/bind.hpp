#pragma once

#include "app/model/property.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QObject>

#include <concepts>
#include <memory>
#include <utility>

namespace Corvane {

/// Calls `show` with the result of `read`: now, and whenever a change of the properties that `read`
/// uses has changed the result. Ends when `owner` is destroyed.
template <class Read, class Show>
void bind(QObject& owner, Read read, Show show) {
    struct Binding final : QObject {
        Binding(QObject* owner, std::shared_ptr<Watcher> watcher)
            : QObject(owner)
            , watcher(std::move(watcher)) {}
        const std::shared_ptr<Watcher> watcher;
    };
    new Binding(&owner, watch(std::move(read), std::move(show)));
}

/// The control shows the result of `read`; what the user sets goes to `write`.
template <std::derived_from<Kit::ValueControl> Number, class Read, class Write>
void bind(Number& control, Read read, Write write) {
    control.onChange = std::move(write);
    Corvane::bind(
        static_cast<QObject&>(control), [read] { return static_cast<double>(read()); },
        [&control](double value) { control.setValue(value); });
}

}  // namespace Corvane
