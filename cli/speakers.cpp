#include "cli/commands.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"

#include "Wendril/text.hpp"

#include <stdexcept>
#include <string_view>

namespace Cli {

using namespace Wendril;

namespace {

Row rowOf(const DeviceInfo& s) { return {twoDigits(s.address), s.model, s.version, s.date, s.serial}; }

std::string tableOf(std::vector<Row> rows) {
    return table({"caixa", "modelo", "versão", "data", "série"}, std::move(rows));
}

void printSpeakers(const Session& session, const std::vector<DeviceInfo>& speakers) {
    Json list = Json::array();
    std::vector<Row> rows;
    for (const DeviceInfo& s : speakers) {
        list.push_back(jsonOf(s));
        rows.push_back(rowOf(s));
    }
    if (session.json) return printJson(list);
    if (!rows.empty()) print(tableOf(std::move(rows)));
}

struct AddressRange {
    std::uint8_t first;
    std::uint8_t last;
};

AddressRange parseRange(const std::string& text) {
    const auto address = [&text](std::string_view digits) {
        const auto number = parseNumber<std::uint8_t>(digits, 1, Addresses::last);
        if (!number)
            throw std::invalid_argument("a faixa se escreve PRIMEIRO-ÚLTIMO, de 1 a 254, não \"" + text +
                                        "\"");
        return *number;
    };
    const std::size_t dash = text.find('-');
    const std::uint8_t first = address(std::string_view(text).substr(0, dash));
    const std::uint8_t last = dash == text.npos ? first : address(std::string_view(text).substr(dash + 1));
    if (first > last) throw std::invalid_argument("a faixa " + text + " está ao contrário");
    return {first, last};
}

// The text for a chain on which nobody answers the start of addressing.
Failure nobodyAddressed(const Link& link) {
    return {ExitStatus::noAnswer, "nenhuma caixa respondeu ao endereçamento em " + link.name +
                                      "; confira o cabo no \"From PC\" da primeira caixa e a alimentação"};
}

}  // namespace

void scan(Session& session, const std::string& range) {
    const AddressRange addresses = parseRange(range);
    Link& link = session.link();
    const auto found = link.run(link.client().scan(addresses.first, addresses.last));
    link.throwIfLost();
    printSpeakers(session, found);
    if (found.empty())
        throw Failure(ExitStatus::noAnswer, "nenhuma caixa respondeu de " + range + " em " + link.name +
                                                "; confira o cabo no \"From PC\" e a alimentação");
}

void assignAddresses(Session& session) {
    session.confirm("As caixas vão perder seus endereços e receber 1, 2, 3… na ordem da linha. Continuar?");
    Link& link = session.link();
    K7QClient::Addressing given;
    try {
        given = link.run(link.client().assignVerified(mostSpeakers));
    } catch (const Failure& failure) {
        // The start of addressing is acknowledged within 10 s, or no board has heard it.
        if (failure.function != static_cast<std::uint8_t>(Fun::netStart)) throw;
        throw nobodyAddressed(link);
    }
    printSpeakers(session, given.found);
    if (!given.isCertain)
        throw Failure(ExitStatus::refused,
                      "o endereçamento não pôde ser confirmado; confira os cabos e enderece de novo");
    if (given.found.empty()) throw nobodyAddressed(link);
}

void showInfo(Session& session, const Addresses& addresses) {
    session.forEach(addresses, [&session](std::uint8_t address) -> Answer {
        const DeviceInfo info = session.link().run(session.link().client().info(address), address);
        return {Json::array({jsonOf(info)}), tableOf({rowOf(info)})};
    });
}

}  // namespace Cli
