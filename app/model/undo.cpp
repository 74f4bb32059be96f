#include "app/model/appmodel.hpp"

#include "app/model/words.hpp"

#include <algorithm>
#include <set>

namespace Corvane {

using namespace Wendril;

namespace {

// "PEQ 3, SAÍDA 1" for one module, and as much of it as several modules have in common.
std::string wordsFor(const std::set<std::uint8_t>& modules) {
    const ModuleRef first = K7Q::module(*modules.begin()).value();
    if (modules.size() == 1) return wordFor(first);
    std::set<std::string_view> channels;
    bool sameKind = true;
    for (const std::uint8_t index : modules) {
        const auto found = std::ranges::find(K7Q::modules(), index, &ModuleRef::index);
        channels.insert(found->channel);
        sameKind = sameKind && found->kind == first.kind;
    }
    if (!sameKind) return std::to_string(modules.size()) + " ajustes";
    return wordFor(first.kind) + ", " +
           (channels.size() == 1 ? wordFor(first.channel) : std::to_string(channels.size()) + " canais");
}

std::string wordsFor(const History::Step& step) {
    std::set<std::uint8_t> modules;
    std::set<std::uint8_t> addresses;
    for (const auto& [key, change] : step.changes) {
        modules.insert(key.index);
        addresses.insert(key.address);
    }
    return (step.preset ? "preset " + std::to_string(*step.preset) : wordsFor(modules)) + ", " +
           wordFor({addresses.begin(), addresses.end()});
}

}  // namespace

void AppModel::undo() {
    while (const auto step = history.undo())
        if (apply(*step, &History::Change::before)) return tell("Desfeito: " + wordsFor(*step));
    tell("Nada a desfazer");
}

void AppModel::redo() {
    while (const auto step = history.redo())
        if (apply(*step, &History::Change::after)) return tell("Refeito: " + wordsFor(*step));
    tell("Nada a refazer");
}

// Whether anything has changed.
bool AppModel::apply(const History::Step& step, ModuleValue History::Change::*side) {
    bool changed = false;
    for (const auto& [key, change] : step.changes)
        if (write(*change.speaker, key.index, change.*side)) changed = true;
    return changed;
}

void AppModel::tell(std::string text) { report = Report{report.value().number + 1, std::move(text)}; }

}  // namespace Corvane
