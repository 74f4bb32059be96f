#include "cli/commands.hpp"
#include "cli/curves.hpp"
#include "cli/file.hpp"
#include "cli/output.hpp"
#include "cli/settings.hpp"

#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

Answer answerOf(const std::vector<Curve>& curves) {
    const auto& frequencies = curveFrequencies();
    Json list = Json::array();
    Row titles{"Hz"};
    std::vector<Row> rows;
    for (const double frequency : frequencies)
        rows.push_back({fixed(frequency, 2)});
    for (const Curve& curve : curves) {
        const auto db = curve.db();
        const auto degrees = curve.degrees();
        list.push_back({{"name", curve.name}, {"db", db}, {"phase", degrees}});
        titles.insert(titles.end(), {curve.name + " dB", "fase °"});
        for (std::size_t i = 0; i < rows.size(); ++i)
            rows[i].insert(rows[i].end(), {fixed(db[i], 2), fixed(degrees[i], 1)});
    }
    return {Json{{"frequencies", frequencies}, {"curves", list}}, table(titles, std::move(rows))};
}

}  // namespace

void showResponse(Session& session, const Addresses& addresses, const ResponseOptions& options) {
    if (options.channels.empty() && options.sum.empty())
        throw std::invalid_argument("diga um canal ou --sum");
    if (!options.svg.empty() && addresses.named.size() != 1)
        throw std::invalid_argument("--svg desenha as curvas de uma caixa só");
    for (const auto* const list : {&options.channels, &options.sum})
        for (const std::string& channel : *list)
            curveModules(channel, false);
    session.forEach(addresses, [&](std::uint8_t address) {
        const auto curve = [&](const std::string& channel, bool level) {
            Link& link = session.link();
            const auto values =
                link.run(readEach(link.client(), address, curveModules(channel, level)), address);
            return curveOf(channel, values, level);
        };
        std::vector<Curve> curves;
        for (const std::string& channel : options.channels)
            curves.push_back(curve(channel, false));
        std::vector<Curve> parts;
        for (const std::string& channel : options.sum)
            parts.push_back(curve(channel, true));
        if (!parts.empty()) curves.push_back(sumOf(parts));
        if (!options.svg.empty()) writeFile(options.svg, svgOf(curves));
        return answerOf(curves);
    });
}

}  // namespace Cli
