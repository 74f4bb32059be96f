#include "app/model/history.hpp"

#include <chrono>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr auto burstPause = std::chrono::milliseconds(500);

std::optional<History::Step> take(std::deque<History::Step>& from, std::deque<History::Step>& to) {
    if (from.empty()) return std::nullopt;
    to.push_back(std::move(from.back()));
    from.pop_back();
    return to.back();
}

}  // namespace

// What follows begins a step of its own.
void History::closeStep() {
    isStepOpen = false;
    stepSource = nullptr;
    stepRun = 0;
}

void History::beginGesture() {
    closeStep();
    inGesture = true;
    source = nullptr;
}

void History::endGesture() {
    closeStep();
    inGesture = false;
}

void History::burst(const void* from) { source = from; }

void History::push(Step step) {
    closeStep();
    undoable.push_back(std::move(step));
    if (undoable.size() > keptSteps) undoable.pop_front();
}

History::Step& History::stepFor(TimePoint at) {
    const bool continues = source && stepSource == source && at - changedAt <= burstPause;
    if (!isStepOpen && !continues) push({});
    isStepOpen = inGesture || scopes > 0;
    stepSource = source;
    changedAt = at;
    return undoable.back();
}

void History::record(TimePoint at, const std::shared_ptr<Speaker>& speaker, std::uint8_t index,
                     const ModuleValue& before, const ModuleValue& after) {
    redoable.clear();
    const auto [place, added] =
        stepFor(at).changes.try_emplace({speaker->address, index}, Change{speaker, before, after});
    if (!added) place->second.after = after;
}

void History::addRecall(int preset, std::uint64_t run, Changes changes) {
    if (changes.empty()) return;
    redoable.clear();
    if (stepRun != run) push({preset, {}});
    stepRun = run;
    undoable.back().changes.merge(changes);
}

std::optional<History::Step> History::undo() {
    closeStep();
    return take(undoable, redoable);
}

std::optional<History::Step> History::redo() {
    closeStep();
    return take(redoable, undoable);
}

void History::clear() {
    closeStep();
    undoable.clear();
    redoable.clear();
}

}  // namespace Corvane
