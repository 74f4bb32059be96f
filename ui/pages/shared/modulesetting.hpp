#pragma once

#include "app/model/appmodel.hpp"

#include "Wendril/limits.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace Corvane {

/// The setting of one module. `value` is the focused speaker's, or the module's default while the
/// speaker has not reported it. `edit` changes some of its fields and writes all of them to the
/// targeted speakers.
template <class Case>
class ModuleSetting {
public:
    ModuleSetting(AppModel& model, Wendril::ModuleKind kind, std::string_view channel, int band = 0)
        : model(&model)
        , kind(kind)
        , channel(channel)
        , band(band)
        , index(Wendril::K7Q::index(kind, channel, band)) {}

    Case value() const { return model->valueOrDefault<Case>(kind, channel, band); }

    /// The limits of the field of that name.
    Wendril::Limits limits(std::string_view field) const { return Wendril::limitsOf(kind, field, channel); }

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

}  // namespace Corvane
