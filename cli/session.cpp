#include "cli/session.hpp"

#include "cli/numbers.hpp"

#include "Wendril/text.hpp"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <iterator>
#include <optional>
#include <set>

namespace Cli {

using namespace Wendril;

namespace {

constexpr auto pingTimeout = std::chrono::milliseconds(200);
constexpr int pings = 3;

Task<std::vector<std::uint8_t>> findSpeakers(K7QClient client, std::set<std::uint8_t> named) {
    std::set<std::uint8_t> found;
    int last = mostSpeakers;
    for (int round = 0; round < pings; ++round) {
        std::set<std::uint8_t> asked = named;
        for (int address = 1; address <= last; ++address)
            asked.insert(static_cast<std::uint8_t>(address));
        for (const std::uint8_t address : asked)
            if (!found.contains(address) && co_await client.ping(address, pingTimeout)) found.insert(address);
        // From the second round on only gaps and the next address are asked again.
        const auto outside = found.upper_bound(mostSpeakers);
        const int highest = outside == found.begin() ? 0 : *std::prev(outside);
        last = std::min(highest + 1, mostSpeakers);
    }
    co_return std::vector(found.begin(), found.end());
}

// Lets a signal end the process, for a while.
class DefaultAction {
public:
    explicit DefaultAction(int signal)
        : signal(signal)
        , before(std::signal(signal, SIG_DFL)) {}
    ~DefaultAction() { std::signal(signal, before); }
    DefaultAction(const DefaultAction&) = delete;
    DefaultAction& operator=(const DefaultAction&) = delete;

private:
    const int signal;
    void (*const before)(int);
};

}  // namespace

Addresses Addresses::parse(const std::string& text) {
    if (text == "all") return {};
    std::set<std::uint8_t> named;
    const auto refuse = [&text] {
        throw std::invalid_argument("os endereços se escrevem 1, 1-3,5 ou all, de 1 a " +
                                    std::to_string(last) + ", não \"" + text + "\"");
    };
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t comma = std::min(text.find(',', from), text.size());
        const std::string_view part = std::string_view(text).substr(from, comma - from);
        const std::size_t dash = part.find('-');
        const auto low = parseNumber<std::uint8_t>(part.substr(0, dash), 1, last);
        const auto high = dash == part.npos ? low : parseNumber<std::uint8_t>(part.substr(dash + 1), 1, last);
        if (!low || !high || *low > *high) refuse();
        for (int address = *low; address <= *high; ++address)
            named.insert(static_cast<std::uint8_t>(address));
        from = comma + 1;
    }
    return {{named.begin(), named.end()}};
}

Link& Session::link() {
    if (!endpoint.isNamed())
        throw std::invalid_argument(
            "diga onde estão as caixas: --port PORTA, --bridge HOST[:PORTA] ou --demo");
    if (!opened) opened = std::make_shared<Link>(endpoint, verbose);
    return *opened;
}

std::vector<std::uint8_t> Session::resolve(const Addresses& addresses) {
    return addresses.named.empty() ? speakersThatAnswer() : addresses.named;
}

std::vector<std::uint8_t> Session::speakersThatAnswer(const std::set<std::uint8_t>& named) {
    Link& open = link();
    auto found = open.run(findSpeakers(open.client(), named));
    open.throwIfLost();
    if (found.empty())
        throw Failure(ExitStatus::noAnswer,
                      "nenhuma caixa respondeu em " + open.name + "; confira o cabo no \"From PC\"");
    return found;
}

void Session::confirm(const std::string& question) const {
    if (yes) return;
    if (!canAsk)
        throw Failure(ExitStatus::failed,
                      question + " A entrada traz os comandos e não responde: junte --yes");
    std::cerr << question << " [s/N] " << std::flush;
    std::string answer;
    {
        // Nothing is on its way. The link's own handler would wait for the end of the line.
        const DefaultAction interrupt(SIGINT);
        const DefaultAction terminate(SIGTERM);
        std::getline(std::cin, answer);
    }
    if (answer != "s" && answer != "S" && answer != "sim")
        throw Failure(ExitStatus::failed, "nada foi mudado (--yes responde sim)");
}

void Session::forEach(const Addresses& addresses, const std::function<Answer(std::uint8_t)>& ask) {
    const auto targets = resolve(addresses);
    if (addresses.named.size() == 1) {
        const Answer answer = ask(targets.front());
        return json ? printJson(answer.json) : print(answer.text);
    }
    Json list = Json::array();
    for (const std::uint8_t address : targets) {
        const Answer answer = ask(address);
        if (json)
            list.push_back({{"address", address}, {"answer", answer.json}});
        else
            print("caixa " + twoDigits(address) + "\n" + answer.text);
    }
    if (json) printJson(list);
}

}  // namespace Cli
