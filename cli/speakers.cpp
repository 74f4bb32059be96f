#include "cli/commands.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"

#include "Wendril/text.hpp"

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string_view>

namespace Cli {

using namespace Wendril;

namespace {

constexpr int mostSpeakers = 16;

void printSpeakers(const Session& session, const std::vector<DeviceInfo>& speakers) {
    if (session.json) {
        Json list = Json::array();
        for (const DeviceInfo& s : speakers)
            list.push_back({{"address", s.address},
                            {"product", s.product},
                            {"model", s.model},
                            {"version", s.version},
                            {"date", s.date},
                            {"serial", s.serial}});
        return printJson(list);
    }
    if (speakers.empty()) return;
    std::vector<Row> rows;
    for (const DeviceInfo& s : speakers)
        rows.push_back({twoDigits(s.address), s.model, s.version, s.date, s.serial});
    print(table({"caixa", "modelo", "versão", "data", "série"}, rows));
}

struct AddressRange {
    std::uint8_t first;
    std::uint8_t last;
};

AddressRange parseRange(const std::string& text) {
    const auto address = [&text](std::string_view digits) {
        const auto number = parseNumber<std::uint8_t>(digits, 1, 255);
        if (!number)
            throw std::invalid_argument("a faixa se escreve PRIMEIRO-ÚLTIMO, de 1 a 255, não \"" + text +
                                        "\"");
        return *number;
    };
    const std::size_t dash = text.find('-');
    const std::uint8_t first = address(std::string_view(text).substr(0, dash));
    const std::uint8_t last = dash == text.npos ? first : address(std::string_view(text).substr(dash + 1));
    if (first > last) throw std::invalid_argument("a faixa " + text + " está ao contrário");
    return {first, last};
}

void confirmOnTerminal() {
    std::fprintf(
        stderr,
        "As caixas vão perder seus endereços e receber 1, 2, 3… na ordem da linha. Continuar? [s/N] ");
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "s" && answer != "S" && answer != "sim") throw std::runtime_error("nada foi mudado");
}

}  // namespace

void listPorts(const Session& session) {
    const auto ports = SerialTransport::availablePorts();
    if (session.json) return printJson(Json(ports));
    for (const std::string& port : ports)
        print(port + "\n");
    if (ports.empty()) std::fprintf(stderr, "nenhuma porta serial encontrada\n");
}

void scan(const Session& session, const std::string& range) {
    const AddressRange addresses = parseRange(range);
    Link link(session.endpoint, session.verbose);
    const auto found = link.run(link.client().scan(addresses.first, addresses.last));
    link.throwIfLost();
    printSpeakers(session, found);
    if (found.empty()) throw std::runtime_error("nenhuma caixa respondeu de " + range);
}

void assignAddresses(const Session& session, bool confirmed) {
    if (!confirmed) confirmOnTerminal();
    Link link(session.endpoint, session.verbose);
    const auto [found, isCertain] = link.run(link.client().assignVerified(mostSpeakers));
    printSpeakers(session, found);
    if (!isCertain)
        throw std::runtime_error(
            "o endereçamento não pôde ser confirmado; confira os cabos e enderece de novo");
    if (found.empty()) throw std::runtime_error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");
}

void showInfo(const Session& session, std::uint8_t address) {
    Link link(session.endpoint, session.verbose);
    printSpeakers(session, {link.run(link.client().info(address))});
}

}  // namespace Cli
