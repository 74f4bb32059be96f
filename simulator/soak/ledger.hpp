#pragma once

#include "simulator/soak/fault.hpp"

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace Soak {

/// A module of the speaker at that address.
using Key = std::pair<std::uint8_t, std::uint8_t>;

/// What the run counts, and the differences between window and speakers that have an explanation. An
/// explanation holds until the module is written or read without a fault, or the chain is read anew.
struct Ledger {
    std::array<std::uint64_t, faultNames.size()> faults{};
    std::map<std::string, std::uint64_t> gestures;
    std::uint64_t openings = 0;
    std::uint64_t requests = 0;
    std::uint64_t replies = 0;
    std::uint64_t writes = 0;     // edits that were sent, without resends
    std::uint64_t confirmed = 0;  // of them, by an acknowledgement
    std::uint64_t noticed = 0;    // edits of which a notice says that they were not confirmed or not sent
    std::uint64_t checks = 0;     // of all modules of all speakers
    std::uint64_t told = 0;       // differences of which a notice had told
    std::uint64_t ambiguous = 0;  // differences that the protocol itself cannot exclude
    std::uint64_t unaccounted = 0;

    std::set<Key> toldKeys;
    std::set<std::uint8_t> toldSpeakers;  // all modules of them
    std::set<Key> ambiguousKeys;
    std::set<std::uint8_t> ambiguousSpeakers;
    bool ambiguousAddresses = false;  // of the chain: several boards at one, or another board than listed

    void count(Fault fault) { ++faults[static_cast<std::size_t>(fault)]; }

    void forgetExplanations() {
        toldKeys.clear();
        toldSpeakers.clear();
        ambiguousKeys.clear();
        ambiguousSpeakers.clear();
        ambiguousAddresses = false;
    }
};

/// A property that must always hold does not: the reason, for a reader.
struct Violation {
    std::string what;
};

}  // namespace Soak
