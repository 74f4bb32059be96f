#include "cli/commands.hpp"
#include "cli/insist.hpp"
#include "cli/modules.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"
#include "cli/progress.hpp"
#include "cli/showfile.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <set>

namespace Cli {

using namespace Wendril;

namespace {

// A speaker of the file and the one on the chain that stands for it.
struct Pair {
    const ShowSpeaker* wanted;
    DeviceInfo present;
};

struct Matching {
    std::vector<Pair> pairs;
    std::vector<std::uint8_t> absent;  // addresses in the file
};

// The addresses that the file or `moves` names.
std::set<std::uint8_t> namedIn(const Show& show, const std::map<std::uint8_t, std::uint8_t>& moves) {
    std::set<std::uint8_t> named;
    for (const ShowSpeaker& speaker : show.speakers)
        named.insert(speaker.info.address);
    for (const auto& [from, to] : moves)
        named.insert(to);
    return named;
}

// By `moves` first, then by serial number, then by address.
Matching match(Session& session, const Show& show, const std::map<std::uint8_t, std::uint8_t>& moves) {
    std::map<std::uint8_t, DeviceInfo> chain;
    for (const std::uint8_t address : session.speakersThatAnswer(namedIn(show, moves)))
        chain[address] = readInfo(session, address);
    Matching matching;
    std::set<std::uint8_t> taken;
    const auto take = [&](const ShowSpeaker& speaker, std::uint8_t address) {
        matching.pairs.push_back({&speaker, chain.at(address)});
        taken.insert(address);
    };
    std::vector<const ShowSpeaker*> open;
    for (const ShowSpeaker& speaker : show.speakers) {
        const auto move = moves.find(speaker.info.address);
        if (move == moves.end())
            open.push_back(&speaker);
        else if (chain.contains(move->second) && !taken.contains(move->second))
            take(speaker, move->second);
        else
            matching.absent.push_back(speaker.info.address);
    }
    std::vector<const ShowSpeaker*> strangers;
    for (const ShowSpeaker* const speaker : open) {
        const auto same = std::ranges::find_if(chain, [&](const auto& entry) {
            return entry.second.serial == speaker->info.serial && !taken.contains(entry.first);
        });
        same == chain.end() ? strangers.push_back(speaker) : take(*speaker, same->first);
    }
    for (const ShowSpeaker* const speaker : strangers) {
        const std::uint8_t address = speaker->info.address;
        const bool isFree = chain.contains(address) && !taken.contains(address);
        isFree ? take(*speaker, address) : matching.absent.push_back(address);
    }
    std::ranges::sort(matching.pairs, {}, [](const Pair& pair) { return pair.present.address; });
    return matching;
}

struct Difference {
    std::uint8_t address;
    std::string what;  // module or preset
    std::string file;
    std::string board;
};

void printDifferences(const Session& session, const std::vector<Difference>& differences) {
    Json list = Json::array();
    std::vector<Row> rows;
    for (const auto& [address, what, file, board] : differences) {
        list.push_back({{"address", address}, {"what", what}, {"file", file}, {"board", board}});
        rows.push_back({twoDigits(address), what, file, board});
    }
    if (session.json) return printJson(list);
    if (!rows.empty()) print(table({"caixa", "módulo", "arquivo", "na caixa"}, std::move(rows)));
}

void addPresetDifferences(std::vector<Difference>& differences, std::uint8_t address,
                          const std::map<std::uint32_t, std::string>& file,
                          const std::map<std::uint32_t, std::string>& board) {
    for (std::uint32_t n = 0; n < 32; ++n) {
        const auto nameIn = [n](const auto& names) {
            return names.contains(n) ? "\"" + names.at(n) + "\"" : std::string("vazio");
        };
        if (nameIn(file) != nameIn(board))
            differences.push_back({address, "preset " + std::to_string(n), nameIn(file), nameIn(board)});
    }
}

[[noreturn]] void refuseAbsent(const std::vector<std::uint8_t>& absent) {
    std::string list;
    for (const std::uint8_t address : absent)
        list += (list.empty() ? "" : ", ") + twoDigits(address);
    throw Failure(ExitStatus::noAnswer,
                  "não estão na linha as caixas do arquivo " + list + "; --to diz quais as substituem");
}

std::set<ModuleKind> kindsOf(const std::vector<std::string>& names) {
    std::set<ModuleKind> kinds;
    for (std::string name : names) {
        std::ranges::transform(name, name.begin(),
                               [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        const auto kind = moduleKindFromRaw(name);
        if (!kind || kind == ModuleKind::vu)
            throw std::invalid_argument("não há módulos \"" + name + "\"; os tipos são " + settableKinds());
        kinds.insert(*kind);
    }
    return kinds;
}

std::map<std::uint8_t, std::uint8_t> movesOf(const std::vector<std::string>& texts, const Show& show) {
    std::map<std::uint8_t, std::uint8_t> moves;
    for (const std::string& text : texts) {
        const std::size_t equals = std::min(text.find('='), text.size());
        const auto from =
            parseNumber<std::uint8_t>(std::string_view(text).substr(0, equals), 1, Addresses::last);
        const auto to = parseNumber<std::uint8_t>(
            std::string_view(text).substr(std::min(equals + 1, text.size())), 1, Addresses::last);
        if (!from || !to)
            throw std::invalid_argument("--to se escreve ARQUIVO=LINHA, dois endereços, não \"" + text +
                                        "\"");
        if (std::ranges::none_of(show.speakers, [&](const auto& s) { return s.info.address == *from; }))
            throw std::invalid_argument("o arquivo não tem a caixa " + twoDigits(*from));
        moves[*from] = *to;
    }
    return moves;
}

}  // namespace

void backup(Session& session, const Addresses& addresses) {
    Show show;
    for (const std::uint8_t address : session.resolve(addresses))
        show.speakers.push_back(readSpeaker(session, readInfo(session, address)));
    print(show.text());
}

void diff(Session& session, const std::string& file) {
    const Show show = Show::read(file);
    const Matching matching = match(session, show, {});
    std::vector<Difference> differences;
    for (const auto& [wanted, present] : matching.pairs) {
        const ShowSpeaker board = readSpeaker(session, present);
        for (const auto& [index, value] : wanted->settings)
            if (const ModuleValue& held = board.settings.at(index); !sameBytes(held, value))
                differences.push_back({present.address, labelOf(K7Q::module(index).value()),
                                       fieldsText(value), fieldsText(held)});
        addPresetDifferences(differences, present.address, wanted->presets, board.presets);
    }
    printDifferences(session, differences);
    if (!matching.absent.empty()) refuseAbsent(matching.absent);
    if (!differences.empty())
        throw Failure(ExitStatus::refused, "diferenças: " + std::to_string(differences.size()));
}

void restore(Session& session, const std::string& file, const RestoreOptions& options) {
    const Show show = Show::read(file);
    checkLimits(show);
    const auto kinds = kindsOf(options.only);
    const Matching matching = match(session, show, movesOf(options.moves, show));
    if (!matching.absent.empty()) refuseAbsent(matching.absent);
    std::vector<Difference> changes;
    for (const auto& [wanted, present] : matching.pairs) {
        ProgressLine line("Comparando a caixa " + twoDigits(present.address));
        for (const auto& [index, value] : wanted->settings) {
            const ModuleRef module = K7Q::module(index).value();
            if (!kinds.empty() && !kinds.contains(module.kind)) continue;
            line.show(index / 92.0);
            const ModuleValue held = readModule(session, present.address, module);
            if (sameBytes(held, value)) continue;
            if (!options.dryRun) writeAndCompare(session, present.address, module, value);
            changes.push_back({present.address, labelOf(module), fieldsText(value), fieldsText(held)});
        }
    }
    Json list = Json::array();
    std::vector<Row> rows;
    for (const auto& [address, module, now, before] : changes) {
        list.push_back({{"address", address}, {"module", module}, {"before", before}, {"now", now}});
        rows.push_back({twoDigits(address), module, before, now});
    }
    if (session.json) return printJson(list);
    if (!rows.empty())
        print(
            table({"caixa", "módulo", "antes", options.dryRun ? "mudaria para" : "agora"}, std::move(rows)));
    print((options.dryRun ? "módulos que mudariam: " : "módulos mudados e conferidos: ") +
          std::to_string(changes.size()) + "\n");
}

}  // namespace Cli
