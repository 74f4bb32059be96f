#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace Soak {

/// Pseudo-random draws, the same for the same seed on every machine.
class Chance {
public:
    explicit Chance(std::uint64_t seed)
        : generator(seed) {}

    /// From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(generator() % count); }

    int between(int lowest, int highest) {
        return lowest + static_cast<int>(below(static_cast<std::size_t>(highest - lowest) + 1));
    }

    bool happens(double probability) {
        constexpr std::uint64_t steps = 1U << 30;
        return static_cast<double>(generator() % steps) < probability * static_cast<double>(steps);
    }

    template <class T>
    const T& oneOf(const std::vector<T>& list) {
        return list[below(list.size())];
    }

private:
    std::mt19937_64 generator;
};

}  // namespace Soak
