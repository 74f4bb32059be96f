#include "fuzz/check.hpp"

#include "cli/filtertext.hpp"
#include "cli/showfile.hpp"

#include "Wendril/limits.hpp"

#include <stdexcept>

namespace {

using Fuzz::check;

// What is written reads back the same; what is no show is an error with a text.
void readShow(std::string_view text) {
    try {
        const Cli::Show show = Cli::Show::parse(text);
        check(Cli::Show::parse(show.text()).text() == show.text());
        checkLimits(show);
    } catch (const std::runtime_error& error) {
        check(*error.what() != 0);
    }
}

void readFilters(std::string_view text) {
    const auto bands = Cli::FilterText::parse(text).bands;
    for (const auto& band : bands)
        for (const auto& [name, value] :
             {std::pair{"fc", double{static_cast<double>(band.fc)}}, {"gain", double{band.gain}}}) {
            const auto limits = Wendril::limitsOf(Wendril::ModuleKind::peq, name, "");
            check(value >= limits.lowest && value <= limits.highest);
        }
    check(Cli::FilterText::parse(Cli::filterText(bands)).bands == bands);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    readShow(text);
    readFilters(text);
    return 0;
}
