#include "app/model/speaker.hpp"

#include <utility>

namespace Corvane {

using namespace Wendril;

void Speaker::take(ModuleValues read, const ModuleValues& before) {
    for (const auto& [module, value] : values.value()) {
        const auto old = before.find(module);
        if (old == before.end() || old->second != value) read.insert_or_assign(module, value);
    }
    values = std::move(read);
}

}  // namespace Corvane
