#include "cli/insist.hpp"

#include "cli/presets.hpp"
#include "cli/progress.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"

namespace Cli {

using namespace Wendril;

DeviceInfo readInfo(Session& session, std::uint8_t address) {
    return insist(session, address, [&](const K7QClient& client) { return client.info(address); });
}

ModuleValue readModule(Session& session, std::uint8_t address, const ModuleRef& module) {
    return insist(session, address, [&](const K7QClient& client) { return client.read(address, module); });
}

bool sameBytes(const ModuleValue& a, const ModuleValue& b) { return a.encoded() == b.encoded(); }

void writeAndCompare(Session& session, std::uint8_t address, const ModuleRef& module,
                     const ModuleValue& wanted) {
    std::string reason = "não confere";
    try {
        insist(session, address,
               [&](const K7QClient& client) { return client.write(address, module, wanted); });
    } catch (const Failure& failure) {
        if (failure.status != ExitStatus::refused) throw;
        reason = "foi recusado";
    }
    const ModuleValue held = readModule(session, address, module);
    if (sameBytes(held, wanted)) return;
    throw Failure(ExitStatus::refused,
                  labelOf(module) + " da caixa " + twoDigits(address) + " " + reason + ": pedido " +
                      fieldsText(wanted) + ", a caixa tem " + fieldsText(held),
                  address, static_cast<std::uint8_t>(Fun::moduleSet));
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
