#pragma once

#include "app/model/editqueue.hpp"
#include "app/model/speaker.hpp"

#include "Wendril/runtime/executor.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace Corvane {

/// The settings that the user has changed, in steps that can be undone one by one. Each speaker keeps
/// its own earlier values. The steps are for the speakers listed: clear them with the list, for
/// another speaker may get the same address.
class History {
public:
    struct Change {
        std::shared_ptr<Speaker> speaker;
        Wendril::ModuleValue before;
        Wendril::ModuleValue after;
    };

    using Changes = std::map<WriteKey, Change>;

    struct Step {
        std::optional<int> preset;  // that was recalled; absent for edits
        Changes changes;
    };

    static constexpr std::size_t keptSteps = 200;

    /// What is recorded between the two is one step: from the press to the release of a drag.
    void beginGesture();
    void endGesture();

    /// What is recorded next comes from a wheel notch or a key press on `source`. Within half a second
    /// it belongs to the step of the notch or press before, if that came from the same source.
    void burst(const void* source);

    /// Changes between the construction and the end of a Scope are one step, unless a gesture or a burst
    /// joins them with others.
    class Scope {
    public:
        explicit Scope(History& history)
            : history(history) {
            ++history.scopes;
        }
        ~Scope() {
            if (--history.scopes == 0 && !history.inGesture) history.isStepOpen = false;
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        History& history;
    };

    /// A change of one module of one speaker, at that time. It ends what could be redone.
    void record(Wendril::TimePoint at, const std::shared_ptr<Speaker>& speaker, std::uint8_t index,
                const Wendril::ModuleValue& before, const Wendril::ModuleValue& after);

    /// What a recall has changed on one speaker. One step for all speakers of the recall `run`, unless
    /// something else was recorded in between.
    void addRecall(int preset, std::uint64_t run, Changes changes);

    /// Takes the latest step that is not undone, or not redone. Absent without one.
    std::optional<Step> undo();
    std::optional<Step> redo();

    void clear();

private:
    Step& stepFor(Wendril::TimePoint at);
    void push(Step step);
    void closeStep();

    std::deque<Step> undoable;  // the latest last
    std::deque<Step> redoable;
    bool isStepOpen = false;  // the latest step takes further changes
    bool inGesture = false;
    int scopes = 0;
    const void* source = nullptr;      // of the burst; null in a gesture
    const void* stepSource = nullptr;  // of the latest step
    std::uint64_t stepRun = 0;         // of the latest step, if it is a recall
    Wendril::TimePoint changedAt;
};

}  // namespace Corvane
