#include "simulator/showboards.hpp"

#include "Wendril/text.hpp"

namespace Simulator {

using namespace Wendril;

void loadShow(Line& line, const Cli::Show& show) {
    for (std::size_t i = 0; i < show.speakers.size(); ++i) {
        const Cli::ShowSpeaker& speaker = show.speakers[i];
        Board& board = line.board(i);
        board.assume(speaker.info);
        for (const auto& [index, value] : speaker.settings)
            board.store(index, value);
        for (const auto& [slot, name] : speaker.presets)
            board.storePreset(slot, name);
    }
}

Cli::Show showOf(Line& line, std::size_t boards) {
    Cli::Show show;
    for (std::size_t i = 0; i < boards; ++i) {
        const Board& board = line.board(i);
        Cli::ShowSpeaker speaker{board.info(), {}, {}};
        for (const ModuleRef& module : K7Q::modules())
            if (module.kind != ModuleKind::vu) speaker.settings[module.index] = board.value(module.index);
        for (std::uint32_t slot = 0; slot < 32; ++slot)
            if (const auto& preset = board.preset(slot)) speaker.presets[slot] = fieldText(preset->name);
        show.speakers.push_back(std::move(speaker));
    }
    return show;
}

}  // namespace Simulator
