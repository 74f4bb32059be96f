#include "cli/commands.hpp"
#include "cli/output.hpp"

#include "Wendril/text.hpp"

#include <functional>
#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

struct StoredPreset {
    std::uint32_t number;
    std::string name;
};

struct PresetDirectory {
    K7QClient::PresetInfo info;
    std::vector<StoredPreset> stored;
};

Task<PresetDirectory> readPresets(K7QClient client, std::uint8_t address) {
    PresetDirectory directory;
    directory.info = co_await client.presetInfo(address);
    for (std::uint32_t n = 0; n < 32; ++n) {
        if (!directory.info.isStored(static_cast<int>(n))) continue;
        std::string name = co_await client.presetName(address, n);
        directory.stored.push_back({n, std::move(name)});
    }
    co_return directory;
}

// A board acknowledges a preset command even when it refuses it. Its preset directory afterwards
// shows whether it was `done`.
Task<void> changePreset(K7QClient client, std::uint8_t address, Task<void> command,
                        std::function<bool(const K7QClient::PresetInfo&)> done) {
    co_await std::move(command);
    const K7QClient::PresetInfo after = co_await client.presetInfo(address);
    if (!done(after)) throw std::runtime_error("a caixa " + twoDigits(address) + " não fez o que foi pedido");
}

void printPresetState(const Session& session, const char* action, std::uint32_t number) {
    if (session.json)
        printJson(Json{{"preset", number}, {"action", action}});
    else
        print("preset " + std::to_string(number) + " " + action + "\n");
}

}  // namespace

void listPresets(const Session& session, std::uint8_t address) {
    Link link(session.endpoint, session.verbose);
    const PresetDirectory directory = link.run(readPresets(link.client(), address));
    if (session.json) {
        Json list = Json::array();
        for (const StoredPreset& preset : directory.stored)
            list.push_back({{"number", preset.number}, {"name", preset.name}});
        return printJson(Json{
            {"startUp", directory.info.startUp}, {"current", directory.info.current}, {"presets", list}});
    }
    std::vector<Row> rows;
    for (const StoredPreset& preset : directory.stored)
        rows.push_back({std::to_string(preset.number), preset.name,
                        preset.number == directory.info.current ? "atual" : ""});
    print(table({"nº", "nome", ""}, rows));
}

void loadPreset(const Session& session, std::uint8_t address, std::uint32_t number) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.loadPreset(address, number), [number](const auto& info) {
        return info.current == number && info.isStored(static_cast<int>(number));
    }));
    printPresetState(session, "carregado", number);
}

void savePreset(const Session& session, std::uint8_t address, std::uint32_t number, const std::string& name) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.savePreset(address, number, name),
                          [number](const auto& info) { return info.isStored(static_cast<int>(number)); }));
    printPresetState(session, "salvo", number);
}

void deletePreset(const Session& session, std::uint8_t address, std::uint32_t number) {
    Link link(session.endpoint, session.verbose);
    const K7QClient client = link.client();
    link.run(changePreset(client, address, client.deletePreset(address, number),
                          [number](const auto& info) { return !info.isStored(static_cast<int>(number)); }));
    printPresetState(session, "apagado", number);
}

}  // namespace Cli
