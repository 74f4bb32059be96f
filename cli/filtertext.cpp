#include "cli/filtertext.hpp"

#include "cli/numbers.hpp"

#include "Wendril/limits.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>
#include <optional>
#include <sstream>

namespace Cli {

using namespace Wendril;

namespace {

constexpr struct {
    std::string_view name;
    PeqType type;
} typeNames[] = {
    // The first name of a type is the one that is written.
    {"PK", PeqType::peak},       {"PEQ", PeqType::peak},     {"PEAK", PeqType::peak},
    {"LSC", PeqType::lowShelf},  {"LS", PeqType::lowShelf},  {"LSQ", PeqType::lowShelf},
    {"HSC", PeqType::highShelf}, {"HS", PeqType::highShelf}, {"HSQ", PeqType::highShelf},
};

constexpr double shelfQ = std::numbers::sqrt2 / 2;  // of a shelf that names none

// Capitals, with the blanks of other alphabets as plain ones.
std::vector<std::string> wordsOf(std::string line) {
    for (std::size_t at = 0; (at = line.find("\xC2\xA0", at)) != line.npos;)
        line.replace(at, 2, " ");
    std::ranges::transform(line, line.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

bool isNumber(const std::string& word) {
    return std::ranges::any_of(word, [](unsigned char c) { return std::isdigit(c) != 0; });
}

struct Number {
    double value = 0;
    std::string unit;  // written next to it
};

bool isThousands(const std::string& word, std::size_t sign) {
    const std::size_t end = std::min(word.find_first_not_of("0123456789", sign + 1), word.size());
    return end - sign == 4;
}

// The last sign of a number is its decimal sign, unless three digits follow and the file has another.
std::optional<Number> parseQuantity(std::string word, bool hasPoints) {
    const std::size_t digits = std::min(word.find_first_not_of("+-0123456789.,"), word.size());
    Number number{0, word.substr(digits)};
    word.resize(digits);
    if (word.starts_with('+')) word.erase(0, 1);
    const std::size_t last = word.find_last_of(".,");
    if (last != word.npos) {
        const bool bothSigns = word.find(word[last] == '.' ? ',' : '.') != word.npos;
        const bool isDecimal = bothSigns || !isThousands(word, last) || (word[last] == '.') == hasPoints;
        std::string plain = word.substr(0, last);
        std::erase_if(plain, [](char c) { return c == '.' || c == ','; });
        word = plain + (isDecimal ? "." : "") + word.substr(last + 1);
    }
    const auto value = parseNumber<double>(word);
    if (!value || !std::isfinite(*value)) return std::nullopt;
    number.value = *value;
    return number;
}

// The value after a name, in the unit of the board.
std::optional<double> valueAfter(const std::vector<std::string>& words, std::string_view name,
                                 bool hasPoints) {
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (words[i] != name) continue;
        std::size_t at = i + 1;
        while (at < words.size() && !isNumber(words[at]))
            ++at;  // "BW Oct 0.5"
        if (at == words.size()) return std::nullopt;
        const auto number = parseQuantity(words[at], hasPoints);
        if (!number) return std::nullopt;
        const std::string unit = number->unit.empty() && at + 1 < words.size() ? words[at + 1] : number->unit;
        return unit == "KHZ" || unit == "K" ? number->value * 1000 : number->value;
    }
    return std::nullopt;
}

// Half the bandwidth in octaves gives Q.
double qOfBandwidth(double octaves) { return 1 / (2 * std::sinh(std::numbers::ln2 / 2 * octaves)); }

class Reader {
public:
    explicit Reader(std::string_view text)
        : text(text)
        , hasPoints(writesPoints(text)) {}

    FilterText read() {
        std::istringstream lines{std::string(text)};
        for (std::string line; std::getline(lines, line);) {
            ++lineNumber;
            readLine(wordsOf(line));
        }
        return std::move(result);
    }

private:
    // Whether the decimal sign of the file is a point: no number has a comma that is surely one.
    static bool writesPoints(std::string_view text) {
        std::istringstream lines{std::string(text)};
        for (std::string line; std::getline(lines, line);) {
            const auto words = wordsOf(line);
            if (words.empty() || !words.front().starts_with("FILTER")) continue;
            for (const std::string& word : words)
                if (const std::size_t comma = word.rfind(','); isNumber(word) && comma != word.npos &&
                                                               word.find('.', comma) == word.npos &&
                                                               !isThousands(word, comma))
                    return false;
        }
        return true;
    }

    void remark(const std::string& what) {
        result.remarks.push_back("linha " + std::to_string(lineNumber) + ": " + what);
    }

    void readLine(std::vector<std::string> words) {
        if (words.size() > 1 && words[0] == "PREAMP:")
            return remark("o ganho prévio não é do equalizador e fica de fora");
        if (words.empty() || !words[0].starts_with("FILTER")) return;
        const auto state =
            std::ranges::find_if(words, [](const auto& word) { return word == "ON" || word == "OFF"; });
        if (state == words.end() || state + 1 == words.end() || state[1] == "NONE") return;
        const auto* const known =
            std::ranges::find(typeNames, state[1], [](const auto& entry) { return std::string(entry.name); });
        if (known == std::end(typeNames)) return remark("o tipo " + state[1] + " não existe na placa");
        if (state + 2 != words.end() && isNumber(state[2]))
            return remark(state[1] + " de inclinação fixa não existe na placa");
        const auto fc = valueAfter(words, "FC", hasPoints);
        const auto gain = valueAfter(words, "GAIN", hasPoints);
        const auto octaves = valueAfter(words, "BW", hasPoints);
        auto q = valueAfter(words, "Q", hasPoints);
        if (!q && octaves) q = qOfBandwidth(*octaves);
        if (!q && known->type != PeqType::peak) q = shelfQ;
        if (!fc || !gain || !q) return remark("falta frequência, ganho ou Q");
        result.bands.push_back({static_cast<std::uint32_t>(std::lround(limited("fc", *fc))),
                                static_cast<float>(limited("gain", *gain)),
                                static_cast<float>(limited("q", *q)), static_cast<std::uint8_t>(known->type),
                                *state == "OFF"});
    }

    double limited(std::string_view field, double value) {
        const Limits limits = limitsOf(ModuleKind::peq, field, "");
        const double inside = value >= limits.lowest ? std::min(value, limits.highest) : limits.lowest;
        if (inside != value)
            remark(std::string(field) + " " + numberText(value) + " foi limitado a " + numberText(inside));
        return inside;
    }

    const std::string_view text;
    const bool hasPoints;
    std::size_t lineNumber = 0;
    FilterText result;
};

}  // namespace

FilterText FilterText::parse(std::string_view text) { return Reader(text).read(); }

std::string filterText(const std::vector<PeqValue>& bands) {
    std::string text;
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const PeqValue& band = bands[i];
        text += "Filter " + std::to_string(i + 1) + ": " + (band.bypass ? "OFF " : "ON ");
        const auto type = peqTypeFromRaw(band.type);
        if (type)
            text +=
                std::string(
                    std::ranges::find(typeNames, *type, [](const auto& entry) { return entry.type; })->name) +
                " Fc " + std::to_string(band.fc) + " Hz Gain " + numberText(band.gain) + " dB Q " +
                numberText(band.q);
        else
            text += "None";
        text += "\n";
    }
    return text;
}

}  // namespace Cli
