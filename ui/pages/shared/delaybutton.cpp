#include "ui/pages/shared/delaybutton.hpp"

#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/switchbutton.hpp"

namespace Corvane {

using namespace Wendril;

DelayValue delayOf(const AppModel& model, std::string_view channel) {
    return model.valueAs<DelayValue>(ModuleKind::delay, channel).value_or(DelayValue{0, true});
}

void setDelay(AppModel& model, std::string_view channel, double ms) {
    ModuleSetting<DelayValue>(model, ModuleKind::delay, channel).edit([ms](DelayValue& delay) {
        delay.ms = static_cast<float>(ms);
    });
}

Kit::PillButton* delayButton(AppModel& model, std::string_view channel, QWidget* parent) {
    const ModuleSetting<DelayValue> setting(model, ModuleKind::delay, channel);
    return switchButton(
        {QStringLiteral("ON"), QStringLiteral("OFF")}, [setting] { return !setting.value().bypass; },
        [setting] { setting.edit([](DelayValue& delay) { delay.bypass = !delay.bypass; }); }, parent);
}

}  // namespace Corvane
