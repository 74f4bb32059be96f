#include "cli/reading.hpp"

#include "cli/presets.hpp"
#include "cli/progress.hpp"

#include "Wendril/text.hpp"

namespace Cli {

using namespace Wendril;

DeviceInfo readInfo(Session& session, std::uint8_t address) {
    return insist(session, address, [&](const K7QClient& client) { return client.info(address); });
}

ModuleValue readModule(Session& session, std::uint8_t address, const ModuleRef& module) {
    return insist(session, address, [&](const K7QClient& client) { return client.read(address, module); });
}

ShowSpeaker readSpeaker(Session& session, const DeviceInfo& info) {
    ProgressLine line("Lendo a caixa " + twoDigits(info.address));
    ShowSpeaker speaker{info, {}, {}};
    for (const ModuleRef& module : K7Q::modules()) {
        if (module.kind == ModuleKind::vu) continue;
        speaker.settings[module.index] = readModule(session, info.address, module);
        line.show(module.index / 92.0);
    }
    speaker.presets = readPresets(session, info.address, mostAttempts).names;
    return speaker;
}

}  // namespace Cli
