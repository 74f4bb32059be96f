#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace Wendril {

/// A function without arguments and result, to be called once. Unlike std::function it may hold a
/// callable that can only be moved. Small callables need no allocation.
class UniqueFunction {
public:
    UniqueFunction() = default;

    template <class Callable>
    requires(!std::is_same_v<std::decay_t<Callable>, UniqueFunction> &&
             std::is_invocable_v<std::decay_t<Callable>&>)
        // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): constrained above
        UniqueFunction(Callable&& callable) {
        using Held = std::decay_t<Callable>;
        if constexpr (fits<Held>) {
            ::new (static_cast<void*>(storage)) Held(std::forward<Callable>(callable));
            actions = &inPlace<Held>;
        } else {
            using Pointer = std::unique_ptr<Held>;
            ::new (static_cast<void*>(storage))
                Pointer(std::make_unique<Held>(std::forward<Callable>(callable)));
            actions = &onHeap<Held>;
        }
    }

    UniqueFunction(UniqueFunction&& other) noexcept { take(other); }

    UniqueFunction& operator=(UniqueFunction&& other) noexcept {
        if (this == &other) return *this;
        drop();
        take(other);
        return *this;
    }

    ~UniqueFunction() { drop(); }

    explicit operator bool() const { return actions != nullptr; }

    void operator()() { actions->run(storage); }

private:
    static constexpr std::size_t room = 6 * sizeof(void*);

    template <class Held>
    static constexpr bool
        fits = sizeof(Held) <= room &&
               alignof(Held) <= alignof(void*) && std::is_nothrow_move_constructible_v<Held>;

    struct Actions {
        void (*run)(std::byte*);
        void (*relocate)(std::byte* from, std::byte* to);
        void (*destroy)(std::byte*);
    };

    template <class Held>
    static Held& at(std::byte* bytes) {
        return *std::launder(reinterpret_cast<Held*>(bytes));
    }

    template <class Held>
    static void relocate(std::byte* from, std::byte* to) {
        ::new (static_cast<void*>(to)) Held(std::move(at<Held>(from)));
        std::destroy_at(&at<Held>(from));
    }

    template <class Held>
    static void destroy(std::byte* bytes) {
        std::destroy_at(&at<Held>(bytes));
    }

    template <class Held>
    static constexpr Actions inPlace{[](std::byte* bytes) { at<Held>(bytes)(); }, &relocate<Held>,
                                     &destroy<Held>};

    template <class Held>
    static constexpr Actions onHeap{[](std::byte* bytes) { (*at<std::unique_ptr<Held>>(bytes))(); },
                                    &relocate<std::unique_ptr<Held>>, &destroy<std::unique_ptr<Held>>};

    void take(UniqueFunction& other) {
        actions = std::exchange(other.actions, nullptr);
        if (actions) actions->relocate(other.storage, storage);
    }

    void drop() {
        if (const Actions* held = std::exchange(actions, nullptr)) held->destroy(storage);
    }

    const Actions* actions = nullptr;
    alignas(void*) std::byte storage[room];
};

}  // namespace Wendril
