#pragma once

#include "Wendril/values.hpp"

#include <compare>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>

namespace Corvane {

/// A module of one speaker.
struct WriteKey {
    std::uint8_t address;
    std::uint8_t index;                                 // module number
    auto operator<=>(const WriteKey&) const = default;  // NOLINT(modernize-use-nullptr): no pointer
};

/// Edits that wait to be sent. Of several values of one module only the newest waits, in the place of
/// the first, so that a control that is dragged does not hold up other edits.
class EditQueue {
public:
    struct Edit {
        WriteKey key;
        Wendril::ModuleValue value;
    };

    void add(WriteKey key, const Wendril::ModuleValue& value);

    /// Takes the edit that is next; absent when none waits.
    std::optional<Edit> take();

    bool isEmpty() const { return order.empty(); }
    const std::deque<WriteKey>& keys() const { return order; }
    void clear();

private:
    std::deque<WriteKey> order;  // each key of `pending` once
    std::map<WriteKey, Wendril::ModuleValue> pending;
};

}  // namespace Corvane
