#pragma once

#include "app/model/appmodel.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace Corvane {

/// One module as a page shows and edits it: a read gives the focused speaker's setting, or the
/// module's default; an edit changes some of it and writes it whole.
template <class Case>
class ModuleSetting {
public:
    ModuleSetting(AppModel& model, Wendril::ModuleKind kind, std::string_view channel, int band = 0)
        : model(&model)
        , kind(kind)
        , channel(channel)
        , band(band)
        , index(Wendril::K7Q::index(kind, channel, band)) {}

    Case value() const {
        if (const auto stored = model->valueAs<Case>(kind, channel, band)) return *stored;
        return *Wendril::ModuleValue::factory(*Wendril::K7Q::module(index))->template as<Case>();
    }

    template <class Change>
    void edit(Change change) const {
        Case changed = value();
        change(changed);
        model->set(index, Wendril::ModuleValue{changed});
    }

private:
    AppModel* model;
    Wendril::ModuleKind kind;
    std::string channel;
    int band;
    std::uint8_t index;
};

inline bool isInput(std::string_view channel) { return channel.starts_with("In"); }

}  // namespace Corvane
