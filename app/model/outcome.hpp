#pragma once

#include "Wendril/bus.hpp"

#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace Corvane {

/// How a task has ended.
template <class T>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;  // absent: it failed
    std::string failure;                                                            // in the user's words

    explicit operator bool() const { return value.has_value(); }
};

/// True for the failures of a link that is ending or has ended.
inline bool isOfLink(const std::exception& error) {
    if (const auto* const request = dynamic_cast<const Wendril::BusError*>(&error))
        return request->kind() == Wendril::BusError::Case::closed;
    const auto* const transport = dynamic_cast<const Wendril::TransportError*>(&error);
    return transport && (transport->kind() == Wendril::TransportError::Case::write ||
                         transport->kind() == Wendril::TransportError::Case::notOpen);
}

/// Awaits a task and never fails. A link may fail a request shortly before it reports its own end
/// (of a pulled adapter, a write learns first). Failures of a link are therefore returned late, so
/// that the report is handled before them.
template <class T>
Wendril::Task<Outcome<T>> outcomeOf(Wendril::Task<T> task) {
    constexpr auto reportDelay = std::chrono::milliseconds(100);
    Outcome<T> outcome;
    bool ofLink = false;
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            outcome.value.emplace();
        } else {
            outcome.value = co_await std::move(task);
        }
    } catch (const std::exception& error) {
        outcome.failure = error.what();
        ofLink = isOfLink(error);
    }
    if (ofLink) co_await Wendril::sleepFor(reportDelay);
    co_return outcome;
}

}  // namespace Corvane
