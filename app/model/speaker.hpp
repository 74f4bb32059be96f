#pragma once

#include "app/model/property.hpp"

#include "Wendril/client.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Corvane {

/// One speaker of the chain and the model's copy of its settings: empty until it has been read.
struct Speaker {
    explicit Speaker(const Wendril::DeviceInfo& device)
        : address(device.address)
        , info(device) {}

    /// Returns the value before if it was known and another.
    std::optional<Wendril::ModuleValue> set(std::uint8_t index, const Wendril::ModuleValue& value);

    /// Takes over what was read. `before` is what `values` were when the reading began: a module that
    /// the user has edited since keeps the edit, which is sent to the speaker after the reading. Returns
    /// the numbers of the modules of `before` that have got another value.
    std::vector<std::uint8_t> take(Wendril::ModuleValues read, const Wendril::ModuleValues& before);

    /// The first module that has not been read; absent when all are known.
    std::optional<Wendril::ModuleRef> firstMissing() const;

    /// Takes over a module that was read, unless it is known by now. Returns whether it was the last that
    /// was missing.
    bool fill(std::uint8_t index, const Wendril::ModuleValue& value);

    const std::uint8_t address;
    Property<Wendril::DeviceInfo> info;
    Property<Wendril::ModuleValues> values;
    Wendril::TimePoint healAfter;  // when the next missing module may be asked for
};

using Speakers = std::vector<std::shared_ptr<Speaker>>;

}  // namespace Corvane
