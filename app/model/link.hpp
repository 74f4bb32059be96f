#pragma once

#include "app/model/generation.hpp"

#include "Wendril/client.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Corvane {

/// The link to the speakers, with one bus at most. `open` and `close` overrule an earlier one that
/// has not ended: the earlier one throws Overruled. Everything happens on `executor`; dropping the
/// link closes it.
class Link {
public:
    /// Called when an open link has ended by itself, with the reason in the user's words.
    using Lost = std::function<void(const std::string& reason)>;

    Link(std::shared_ptr<Wendril::Executor> executor, Lost lost);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    std::optional<Wendril::K7QClient> client;           // present while open
    std::shared_ptr<const Wendril::LineRecord> record;  // of the latest bus; null before the first
    Generations discoveries;                            // each with the live loop that follows it
    Generations listings;                               // of presets

    /// From one `open` or `close` to the next, or to the loss of the link.
    Generation generation() const { return generations.latest(); }

    /// Ends the discovery and the listing, then closes what is open or opening.
    Wendril::Task<void> close();

    /// Call it on a closed link. Returns how the opening has ended.
    Wendril::Task<Outcome<void>> open(std::shared_ptr<Wendril::Transport> transport);

private:
    Wendril::Bus::CloseHandler closeHandler(Generation opening);
    void endTasks();

    const std::shared_ptr<Wendril::Executor> executor;
    const Lost lost;
    Generations generations;
    std::shared_ptr<Wendril::Bus> bus;  // opening, open or closing
};

}  // namespace Corvane
