#pragma once

#include "cli/link.hpp"
#include "cli/output.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Cli {

/// Addresses as the user names them: single ones and ranges ("1-3,5"), or all speakers that answer.
struct Addresses {
    static constexpr std::uint8_t last = 254;

    std::vector<std::uint8_t> named;  // ascending; empty for "all"

    /// Throws std::invalid_argument.
    static Addresses parse(const std::string& text);

    bool operator==(const Addresses&) const = default;
};

/// What a command has to say of one speaker, in both forms.
struct Answer {
    Json json;
    std::string text;
};

/// What all commands share: the options, and the link that stays open from one to the next.
struct Session {
    Endpoint endpoint;
    bool verbose = false;
    bool json = false;
    bool yes = false;    // do not ask
    bool canAsk = true;  // standard input is the user's, not a file of commands

    /// Opens at the first use. Throws what Link does, and std::invalid_argument without an endpoint.
    Link& link();

    /// The addresses to talk to.
    std::vector<std::uint8_t> resolve(const Addresses& addresses);

    /// The speakers that answer from 1 to 16 or at an address of `named`. One that is missing between
    /// others or in `named` is asked again, since its reply may have been lost.
    std::vector<std::uint8_t> speakersThatAnswer(const std::set<std::uint8_t>& named = {});

    /// Asks on the terminal, unless `yes`. Throws a Failure unless the answer is "s" or "sim", or when
    /// it cannot ask. A signal ends the process during the question.
    void confirm(const std::string& question) const;

    /// Prints the answer of each speaker: for a single named one the answer alone, else with its
    /// address. Ends at the first that fails.
    void forEach(const Addresses& addresses, const std::function<Answer(std::uint8_t address)>& ask);

private:
    std::shared_ptr<Link> opened;
};

constexpr int mostSpeakers = 16;

}  // namespace Cli
