#include "ui/pages/delaykey.hpp"

#include "ui/kit/bind.hpp"

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
    const QString on = QStringLiteral("ON");
    const QString off = QStringLiteral("OFF");
    auto* const key = new Kit::PillButton(off, Kit::PillButton::Size::compact, parent);
    key->reserveFor({on, off});
    key->action = [&model, channel] {
        const DelayValue delay = delayOf(model, channel);
        write(model, channel, {delay.ms, !delay.bypass});
    };
    Kit::bind(
        *key, [&model, channel] { return delayOf(model, channel).bypass; },
        [key, on, off](bool bypassed) {
            key->setTitle(bypassed ? off : on);
            key->setOn(!bypassed);
        });
    return key;
}

}  // namespace Corvane
