#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ranges>
#include <type_traits>
#include <utility>
#include <vector>

// Fields that can be watched. The toolkit's own bindable properties would do this, but in its
// version 6.4 a binding that reads more than four times is notified through freed memory.
namespace Corvane {

/// Equality for the question whether a field has changed. NaN is the same as NaN here: by `==` it
/// would differ from itself, and writing it again would count as a change each time.
template <class T>
bool same(const T& a, const T& b) {
    if constexpr (std::is_floating_point_v<T>)
        return a == b || (std::isnan(a) && std::isnan(b));
    else if constexpr (std::ranges::forward_range<const T>)
        return std::ranges::equal(a, b, [](const auto& x, const auto& y) { return same(x, y); });
    else
        return a == b;
}

/// Is notified when a property changes that it has read in its latest reading.
class Watcher : public std::enable_shared_from_this<Watcher> {
public:
    virtual ~Watcher() = default;
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

protected:
    Watcher() = default;

    /// Begins a reading: properties that are read during the life of this object notify the watcher,
    /// those of its earlier readings no longer do.
    class Reading {
    public:
        explicit Reading(Watcher& watcher)
            : outer(std::exchange(current, &watcher)) {
            ++watcher.generation;
        }
        ~Reading() { current = outer; }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

    private:
        Watcher* const outer;
    };

    /// Called when one of the properties has changed.
    virtual void refresh() = 0;

private:
    friend class Watched;

    static inline thread_local Watcher* current = nullptr;
    std::uint64_t generation = 0;  // of readings
};

/// The list of watchers that have read a property. During a notification watchers may be added and
/// destroyed, and so may the property itself.
class Watched {
public:
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

protected:
    Watched() = default;
    ~Watched() = default;

    void wasRead() const {
        Watcher* const reader = Watcher::current;
        if (!reader) return;
        if (!entries.empty() && entries.back().isOf(*reader)) return;
        if (entries.size() >= sweepAt) sweep();
        entries.push_back({reader->weak_from_this(), reader, reader->generation});
    }

    void hasChanged() const {
        const std::vector<Entry> readers = std::exchange(entries, {});
        for (const Entry& entry : readers)
            if (const auto watcher = entry.lock()) watcher->refresh();
    }

private:
    struct Entry {
        std::weak_ptr<Watcher> watcher;
        const Watcher* reader;
        std::uint64_t generation;

        bool isOf(const Watcher& other) const { return reader == &other && generation == other.generation; }

        // Null when the watcher is gone, or has begun a later reading since: if that one read this
        // property too, it has an entry of its own.
        std::shared_ptr<Watcher> lock() const {
            auto alive = watcher.lock();
            return alive && isOf(*alive) ? alive : nullptr;
        }
    };

    void sweep() const {
        std::erase_if(entries, [](const Entry& entry) { return !entry.lock(); });
        sweepAt = std::max<std::size_t>(16, 2 * entries.size());
    }

    mutable std::vector<Entry> entries;
    mutable std::size_t sweepAt = 16;
};

/// A field that notifies the watchers that have read it when it takes another value. Confined to one
/// thread.
template <class T>
class Property final : private Watched {
public:
    Property() = default;
    explicit Property(T initial)
        : current(std::move(initial)) {}

    const T& value() const {
        wasRead();
        return current;
    }

    Property& operator=(T next) {
        if (same(next, current)) return *this;
        current = std::move(next);
        hasChanged();
        return *this;
    }

    /// Changes the value in place, for a value that is too large to copy. `change` gets it by
    /// reference and returns whether it has changed it.
    template <class Change>
    void update(Change change) {
        if (change(current)) hasChanged();
    }

private:
    T current{};
};

/// Calls `show` with the result of `read`: now, and whenever a property that `read` has read changes
/// and makes the result another. Ends with the handle.
template <class Read, class Show>
[[nodiscard]] std::shared_ptr<Watcher> watch(Read read, Show show) {
    using Value = std::decay_t<std::invoke_result_t<Read&>>;
    class Watch final : public Watcher {
    public:
        Watch(Read read, Show show)
            : read(std::move(read))
            , show(std::move(show)) {}

        void refresh() override {
            Value next = result();
            if (last && same(*last, next)) return;
            last.emplace(next);
            show(next);
        }

    private:
        Value result() {
            const Reading reading(*this);
            return read();
        }

        Read read;
        Show show;
        std::optional<Value> last;  // absent before the first call of `show`
    };
    auto made = std::make_shared<Watch>(std::move(read), std::move(show));
    made->refresh();
    return made;
}

}  // namespace Corvane
