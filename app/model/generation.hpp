#pragma once

#include "app/model/outcome.hpp"

#include <functional>
#include <memory>
#include <utility>

namespace Corvane {

/// Thrown into a task whose generation is over. It is no std::exception, so that a handler of
/// failures lets it pass.
struct Overruled {};

/// One run of something that a later run overrules: a connection, a discovery, a listing of presets.
/// A task keeps a copy to know whether its run is still the latest.
class Generation {
public:
    bool isOver() const { return token.expired(); }

private:
    friend class Generations;

    explicit Generation(std::weak_ptr<const void> token)
        : token(std::move(token)) {}

    std::weak_ptr<const void> token;
};

/// Successive generations, of which only the latest counts. It is over when the next begins, on
/// `end`, and with this object.
class Generations {
public:
    Generation latest() const { return Generation(token); }

    Generation next() {
        token = std::make_shared<char>();
        return latest();
    }

    void end() { token.reset(); }

private:
    std::shared_ptr<const void> token = std::make_shared<char>();
};

/// Awaits `task` and returns how it has ended. Throws Overruled when `generation` is over by then:
/// what follows this call can rely on the owner of the generation.
template <class T>
Wendril::Task<Outcome<T>> during(Generation generation, Wendril::Task<T> task) {
    Outcome<T> outcome = co_await outcomeOf(std::move(task));
    if (generation.isOver()) throw Overruled();
    co_return outcome;
}

/// Runs the steps of an operation to their end, or until they are overruled. They do not begin when
/// `owner` is over by then.
inline Wendril::Task<void> untilOverruled(Generation owner, std::function<Wendril::Task<void>()> steps) {
    if (owner.isOver()) co_return;
    try {
        co_await steps();
    } catch (const Overruled&) {
        // Whatever has overruled them shows its own state.
    }
}

}  // namespace Corvane
