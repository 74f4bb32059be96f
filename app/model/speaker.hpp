#pragma once

#include "app/model/property.hpp"

#include "Wendril/client.hpp"

#include <cstdint>
#include <map>
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

    /// Call it when a reading begins. Modules edited from then on keep the edit, as do those of
    /// `unsent`: their edits reach the speaker at any time during the reading.
    std::uint64_t beginReading(const std::vector<std::uint8_t>& unsent);

    /// Takes over what was read. Returns the earlier values of the modules that have got another one.
    Wendril::ModuleValues take(Wendril::ModuleValues read, std::uint64_t reading);

    /// The first module that has not been read; absent when all are known.
    std::optional<Wendril::ModuleRef> firstMissing() const;

    /// Takes over a module that was read, unless it is known by now. Returns whether it was the last that
    /// was missing.
    bool fill(std::uint8_t index, const Wendril::ModuleValue& value);

    const std::uint8_t address;
    Property<Wendril::DeviceInfo> info;
    Property<Wendril::ModuleValues> values;
    Wendril::TimePoint healAfter;  // when the next missing module may be asked for

private:
    std::map<std::uint8_t, std::uint64_t> edited;  // number of the latest edit of each module
    std::uint64_t edits = 0;
};

using Speakers = std::vector<std::shared_ptr<Speaker>>;

}  // namespace Corvane
