#include "app/model/editqueue.hpp"

namespace Corvane {

using namespace Wendril;

void EditQueue::add(WriteKey key, const ModuleValue& value) {
    if (pending.insert_or_assign(key, value).second) order.push_back(key);
}

std::optional<EditQueue::Edit> EditQueue::take() {
    if (order.empty()) return std::nullopt;
    const auto entry = pending.extract(order.front());
    order.pop_front();
    return Edit{entry.key(), entry.mapped()};
}

void EditQueue::clear() {
    order.clear();
    pending.clear();
}

}  // namespace Corvane
