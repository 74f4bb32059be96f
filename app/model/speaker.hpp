#pragma once

#include "app/model/property.hpp"

#include "Wendril/client.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Corvane {

/// One speaker of the chain and the model's copy of its settings: empty until it has been read.
struct Speaker {
    explicit Speaker(const Wendril::DeviceInfo& device)
        : address(device.address)
        , info(device) {}

    /// Takes over what was read, except where the user has edited `values` since the reading began:
    /// those edits go to the speaker after it. `before` is what `values` were then.
    void take(Wendril::ModuleValues read, const Wendril::ModuleValues& before);

    const std::uint8_t address;
    Property<Wendril::DeviceInfo> info;
    Property<Wendril::ModuleValues> values;
};

using Speakers = std::vector<std::shared_ptr<Speaker>>;

}  // namespace Corvane
