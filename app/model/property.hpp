#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

// Fields that can be watched. The toolkit's own bindable properties would do this, but in its
// version 6.4 a binding that reads more than four times is notified through freed memory.
namespace Corvane {

/// Something that depends on the properties that it has read when it last ran.
class Watcher : public std::enable_shared_from_this<Watcher> {
public:
    virtual ~Watcher() = default;
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

protected:
    Watcher() = default;

    /// While it lives, what is read is read for this watcher; what was read before counts no more.
    class Reading {
    public:
        explicit Reading(Watcher& watcher)
            : outer(std::exchange(current, &watcher)) {
            ++watcher.run;
        }
        ~Reading() { current = outer; }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

    private:
        Watcher* const outer;
    };

    /// Something that it has read has changed.
    virtual void refresh() = 0;

private:
    friend class Watched;

    static inline thread_local Watcher* current = nullptr;
    std::uint64_t run = 0;
};

/// Who has read a property. It may end, and watchers may come and go, while it tells of a change.
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
        if (!entries.empty() && entries.back().reader == reader && entries.back().run == reader->run) return;
        if (entries.size() >= sweepAt) sweep();
        entries.push_back({reader->weak_from_this(), reader, reader->run});
    }

    void hasChanged() const {
        const std::vector<Entry> readers = std::exchange(entries, {});
        for (const Entry& entry : readers)
            if (const auto watcher = entry.live()) watcher->refresh();
    }

private:
    struct Entry {
        std::weak_ptr<Watcher> watcher;
        const Watcher* reader;
        std::uint64_t run;

        // None when the reader is gone, or has run again without reading this property.
        std::shared_ptr<Watcher> live() const {
            auto alive = watcher.lock();
            return alive && alive->run == run ? alive : nullptr;
        }
    };

    void sweep() const {
        std::erase_if(entries, [](const Entry& entry) { return !entry.live(); });
        sweepAt = std::max<std::size_t>(16, 2 * entries.size());
    }

    mutable std::vector<Entry> entries;
    mutable std::size_t sweepAt = 16;
};

/// A field that tells whoever has read it when it takes another value. Confined to one thread.
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
        if (next == current) return *this;
        current = std::move(next);
        hasChanged();
        return *this;
    }

private:
    T current{};
};

/// Calls `show` with what `read` says: now, and whenever a property that it has read makes it say
/// something else. Ends with the handle.
template <class Read, class Show>
[[nodiscard]] std::shared_ptr<Watcher> watch(Read read, Show show) {
    using Value = std::decay_t<std::invoke_result_t<Read&>>;
    class Watch final : public Watcher {
    public:
        Watch(Read read, Show show)
            : read(std::move(read))
            , show(std::move(show)) {}

        void refresh() override {
            Value next = say();
            if (last == next) return;
            last = next;
            show(next);
        }

    private:
        Value say() {
            const Reading reading(*this);
            return read();
        }

        Read read;
        Show show;
        std::optional<Value> last;
    };
    auto made = std::make_shared<Watch>(std::move(read), std::move(show));
    made->refresh();
    return made;
}

}  // namespace Corvane
