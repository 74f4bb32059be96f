#pragma once

#include "simulator/soak/ledger.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace Soak {

struct Options {
    double hours = 1;
    std::uint64_t seed = 1;
    std::function<void(const std::string& line)> log;  // may be empty
};

struct Result {
    Ledger ledger;
    double hours = 0;  // that were simulated
    double realSeconds = 0;
    std::uint64_t chains = 0;
    std::size_t memory = 0;  // bytes in use at the end, without a link
    std::optional<std::string> violation;
};

/// Runs the model on simulated chains in virtual time: a user who does everything at random, a line on
/// which everything goes wrong, and then a quiet minute after which each speaker must hold what the
/// model shows. Ends early with the first property that does not hold. The same seed gives the same
/// run.
Result run(const Options& options);

}  // namespace Soak
