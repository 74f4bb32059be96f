#include "cli/commands.hpp"
#include "cli/file.hpp"
#include "cli/filtertext.hpp"
#include "cli/insist.hpp"
#include "cli/modules.hpp"
#include "cli/output.hpp"
#include "cli/settings.hpp"

#include "Wendril/fields.hpp"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

std::vector<ModuleRef> bandsOf(const std::string& channel) {
    std::vector<ModuleRef> bands;
    for (const ModuleRef& module : K7Q::modules())
        if (module.kind == ModuleKind::peq && module.channel == channel) bands.push_back(module);
    if (bands.empty())
        throw std::invalid_argument("não há canal \"" + channel + "\"; há In0, In1, Out0, Out1, Out2, Out3");
    return bands;
}

// What the bands become: those of the file, and the rest bypassed with their values.
std::vector<PeqValue> planned(const std::vector<PeqValue>& held, const FilterText& file, std::size_t from) {
    std::vector<PeqValue> bands = held;
    for (std::size_t i = from; i < bands.size(); ++i) {
        if (i - from < file.bands.size())
            bands[i] = file.bands[i - from];
        else
            bands[i].bypass = true;
    }
    return bands;
}

std::vector<PeqValue> readBands(Session& session, std::uint8_t address,
                                const std::vector<ModuleRef>& modules) {
    Link& link = session.link();
    std::vector<PeqValue> bands;
    for (const auto& [index, value] : link.run(readEach(link.client(), address, modules), address))
        bands.push_back(*value.as<PeqValue>());
    return bands;
}

}  // namespace

void importEqualiser(Session& session, const Addresses& addresses, const std::string& channel,
                     const std::string& file, std::uint32_t from) {
    const auto modules = bandsOf(channel);
    if (from >= modules.size())
        throw std::invalid_argument(channel + " tem as bandas 0 a " + std::to_string(modules.size() - 1));
    FilterText filters = FilterText::parse(readFile(file));
    if (filters.bands.empty())
        throw Failure(ExitStatus::failed, file + " não traz nenhum filtro que a placa conheça");
    if (const std::size_t room = modules.size() - from; filters.bands.size() > room)
        filters.remarks.push_back(std::to_string(filters.bands.size() - room) +
                                  " filtros não couberam: " + channel + " tem " + std::to_string(room) +
                                  " bandas a partir da " + std::to_string(from));
    for (const std::string& remark : session.json ? std::vector<std::string>() : filters.remarks)
        std::fprintf(stderr, "%s\n", printable(remark).c_str());
    session.forEach(addresses, [&](std::uint8_t address) -> Answer {
        const auto held = readBands(session, address, modules);
        const auto wanted = planned(held, filters, from);
        Answer answer{Json{{"remarks", filters.remarks}, {"bands", Json::array()}}, ""};
        std::vector<Row> rows;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const ModuleValue value{wanted[i]};
            const bool changes = !sameBytes(value, ModuleValue{held[i]});
            if (changes) writeAndCompare(session, address, modules[i], value);
            answer.json["bands"].push_back(jsonOf(value));
            rows.push_back({labelOf(modules[i]), fieldsText(value), changes ? "mudou" : ""});
        }
        answer.text = table({"módulo", "valor", ""}, std::move(rows));
        return answer;
    });
}

void exportEqualiser(Session& session, std::uint8_t address, const std::string& channel) {
    const auto bands = readBands(session, address, bandsOf(channel));
    print(filterText(bands));
}

}  // namespace Cli
