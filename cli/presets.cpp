#include "cli/presets.hpp"
#include "cli/commands.hpp"
#include "cli/insist.hpp"
#include "cli/output.hpp"

#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <functional>
#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

std::string quoted(const std::string& name) { return "\"" + name + "\""; }

// The name as a board will tell it.
std::string shownName(const std::string& name) {
    return fieldText({reinterpret_cast<const std::uint8_t*>(name.data()), name.size()});
}

void checkName(const std::string& name) {
    if (name.find_first_not_of(" \t") == name.npos) throw std::invalid_argument("falta o nome do preset");
    if (name.size() > presetNameBytes)
        throw std::invalid_argument("o nome " + quoted(name) + " tem " + std::to_string(name.size()) +
                                    " bytes; cabem " + std::to_string(presetNameBytes));
    if (printable(name) != name || name.find_first_of("\r\n") != name.npos)
        throw std::invalid_argument("o nome " + quoted(name) + " tem caracteres de controle");
    if (shownName(name).find("\uFFFD") != name.npos && name.find("\uFFFD") == name.npos)
        throw std::invalid_argument("o nome do preset não é UTF-8");
}

// The state of the board after a command, for the message of a refusal.
std::string stateText(const PresetDirectory& directory, std::uint32_t number) {
    const auto name = directory.nameOf(number);
    return "na caixa, o preset " + std::to_string(number) + " " +
           (name ? "é " + quoted(*name) : std::string("está vazio")) + " e o atual é o " +
           std::to_string(directory.info.current);
}

struct PresetCommand {
    Fun fun;
    const char* done;  // "salvo"
    const char* verb;  // "salvar"
};

// Sends the command. The board has done it when its status says so and its directory shows it.
Answer change(Session& session, std::uint8_t address, std::uint32_t number, const PresetCommand& command,
              Task<bool> request, const std::function<bool(const PresetDirectory&)>& isDone) {
    Link& link = session.link();
    const bool accepted = link.run(std::move(request), address);
    const PresetDirectory after = readPresets(session, address);
    if (!accepted || !isDone(after))
        throw Failure(ExitStatus::refused,
                      "a caixa " + twoDigits(address) + " não quis " + command.verb + " o preset " +
                          std::to_string(number) + "; " + stateText(after, number),
                      address, static_cast<std::uint8_t>(command.fun));
    return {Json{{"preset", number}, {"action", command.done}},
            "preset " + std::to_string(number) + " " + command.done + "\n"};
}

PresetDirectory requireStored(Session& session, std::uint8_t address, std::uint32_t number, Fun fun) {
    PresetDirectory directory = readPresets(session, address);
    if (!directory.nameOf(number))
        throw Failure(ExitStatus::refused,
                      "o preset " + std::to_string(number) + " da caixa " + twoDigits(address) +
                          " está vazio",
                      address, static_cast<std::uint8_t>(fun));
    return directory;
}

}  // namespace

std::optional<std::string> PresetDirectory::nameOf(std::uint32_t number) const {
    const auto found = names.find(number);
    if (found == names.end()) return std::nullopt;
    return found->second;
}

PresetDirectory readPresets(Session& session, std::uint8_t address, int attempts) {
    PresetDirectory directory{
        insist(
            session, address, [=](const K7QClient& client) { return client.presetInfo(address); }, attempts),
        {}};
    for (std::uint32_t n = 0; n < 32; ++n) {
        if (!directory.info.isStored(static_cast<int>(n))) continue;
        try {
            directory.names[n] = insist(
                session, address, [=](const K7QClient& client) { return client.presetName(address, n); },
                attempts);
        } catch (const Failure& failure) {
            if (failure.status != ExitStatus::noAnswer) throw;
            directory.names[n] = "Preset " + std::to_string(n);
        }
    }
    return directory;
}

void listPresets(Session& session, const Addresses& addresses) {
    session.forEach(addresses, [&session](std::uint8_t address) -> Answer {
        const PresetDirectory directory = readPresets(session, address);
        Json list = Json::array();
        std::vector<Row> rows;
        for (const auto& [number, name] : directory.names) {
            list.push_back({{"number", number}, {"name", name}});
            rows.push_back({std::to_string(number), name, number == directory.info.current ? "atual" : ""});
        }
        return {
            Json{{"startUp", directory.info.startUp}, {"current", directory.info.current}, {"presets", list}},
            table({"nº", "nome", ""}, std::move(rows))};
    });
}

void loadPreset(Session& session, const Addresses& addresses, std::uint32_t number) {
    session.forEach(addresses, [&](std::uint8_t address) {
        requireStored(session, address, number, Fun::presetLoad);
        return change(session, address, number, {Fun::presetLoad, "carregado", "carregar"},
                      session.link().client().loadPreset(address, number),
                      [number](const PresetDirectory& now) { return now.info.current == number; });
    });
}

void savePreset(Session& session, const Addresses& addresses, std::uint32_t number, const std::string& name) {
    checkName(name);
    session.forEach(addresses, [&](std::uint8_t address) {
        const PresetDirectory before = readPresets(session, address);
        if (const auto stored = before.nameOf(number))
            session.confirm("O preset " + std::to_string(number) + " da caixa " + twoDigits(address) + ", " +
                            quoted(printable(*stored)) + ", vai ser substituído. Continuar?");
        return change(session, address, number, {Fun::presetSave, "salvo", "salvar"},
                      session.link().client().savePreset(address, number, name),
                      [&](const PresetDirectory& now) { return now.nameOf(number) == shownName(name); });
    });
}

void deletePreset(Session& session, const Addresses& addresses, std::uint32_t number) {
    session.forEach(addresses, [&](std::uint8_t address) {
        const auto before = requireStored(session, address, number, Fun::presetDelete);
        session.confirm("O preset " + std::to_string(number) + " da caixa " + twoDigits(address) + ", " +
                        quoted(printable(*before.nameOf(number))) + ", vai ser apagado. Continuar?");
        return change(session, address, number, {Fun::presetDelete, "apagado", "apagar"},
                      session.link().client().deletePreset(address, number),
                      [number](const PresetDirectory& now) { return !now.nameOf(number); });
    });
}

}  // namespace Cli
