#include "ui/pages/delaykey.hpp"

#include "ui/pages/switchkey.hpp"

namespace Corvane {

using namespace Wendril;

namespace {

void write(AppModel& model, std::string_view channel, const DelayValue& delay) {
    model.set(K7Q::index(ModuleKind::delay, channel, 0), ModuleValue{delay});
}

}  // namespace

DelayValue delayOf(const AppModel& model, std::string_view channel) {
    return model.valueAs<DelayValue>(ModuleKind::delay, channel).value_or(DelayValue{0, true});
}

void setDelay(AppModel& model, std::string_view channel, double ms) {
    write(model, channel, {static_cast<float>(ms), delayOf(model, channel).bypass});
}

Kit::PillButton* delayKey(AppModel& model, std::string_view channel, QWidget* parent) {
    return switchKey(
        {QStringLiteral("ON"), QStringLiteral("OFF")},
        [&model, channel] { return !delayOf(model, channel).bypass; },
        [&model, channel] {
            const DelayValue delay = delayOf(model, channel);
            write(model, channel, {delay.ms, !delay.bypass});
        },
        parent);
}

}  // namespace Corvane
