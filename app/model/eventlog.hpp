#pragma once

#include "app/model/property.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>

namespace Corvane {

/// What has happened since the program began: notices, the link, presets. The latest 500 are kept, in
/// memory alone.
class EventLog {
public:
    struct Event {
        std::chrono::system_clock::time_point at;
        std::string text;
    };

    static constexpr std::size_t keptEvents = 500;

    void add(std::string text) {
        if (events.size() == keptEvents) events.pop_front();
        events.push_back({std::chrono::system_clock::now(), std::move(text)});
        count = count.value() + 1;
    }

    const std::deque<Event>& all() const { return events; }  // oldest first

    Property<std::uint64_t> count;  // of all events so far; changes with each

private:
    std::deque<Event> events;
};

}  // namespace Corvane
