#pragma once

#include "Wendril/runtime/task.hpp"

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace Wendril {

namespace detail {

template <class T>
struct StreamState {
    std::mutex mutex;
    std::deque<T> items;
    bool finished = false;
    Continuation reader;

    // Changes the state and resumes the reader if it waits.
    template <class Change>
    void update(Change change) {
        Continuation woken;
        {
            const std::scoped_lock lock(mutex);
            change(*this);
            woken = std::move(reader);
        }
        if (woken) std::move(woken).post();
    }
};

}  // namespace detail

/// The writing end of an unbounded stream: copies share it, any thread may use it. The stream ends
/// with `finish` or with its last writer.
template <class T>
class StreamWriter {
public:
    explicit StreamWriter(std::shared_ptr<detail::StreamState<T>> state)
        : end(std::make_shared<End>(std::move(state))) {}

    void push(T item) const {
        end->state->update([&item](auto& state) {
            if (!state.finished) state.items.push_back(std::move(item));
        });
    }

    void finish() const { end->finish(); }

private:
    struct End {
        explicit End(std::shared_ptr<detail::StreamState<T>> state)
            : state(std::move(state)) {}
        ~End() { finish(); }
        End(const End&) = delete;
        End& operator=(const End&) = delete;

        void finish() const {
            state->update([](auto& state) { state.finished = true; });
        }

        const std::shared_ptr<detail::StreamState<T>> state;
    };

    std::shared_ptr<const End> end;
};

/// The reading end: one task at a time awaits `next`.
template <class T>
class StreamReader {
public:
    explicit StreamReader(std::shared_ptr<detail::StreamState<T>> state)
        : state(std::move(state)) {}

    /// The oldest item not yet read; none once the stream has ended and is empty.
    auto next() const {
        return detail::Suspension{[&state = *state](TaskContext& task) {
                                      const std::scoped_lock lock(state.mutex);
                                      if (!state.items.empty() || state.finished) return false;
                                      state.reader = Continuation(task);
                                      return true;
                                  },
                                  [&state = *state] {
                                      const std::scoped_lock lock(state.mutex);
                                      std::optional<T> item;
                                      if (state.items.empty()) return item;
                                      item = std::move(state.items.front());
                                      state.items.pop_front();
                                      return item;
                                  }};
    }

private:
    std::shared_ptr<detail::StreamState<T>> state;
};

template <class T>
std::pair<StreamWriter<T>, StreamReader<T>> makeStream() {
    auto state = std::make_shared<detail::StreamState<T>>();
    return {StreamWriter<T>(state), StreamReader<T>(state)};
}

}  // namespace Wendril
