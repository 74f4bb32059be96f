#include "ui/pages/shared/delaybutton.hpp"

#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/switchbutton.hpp"

namespace Corvane {

using namespace Wendril;

Kit::PillButton* delayButton(std::string_view channel, const ModuleSetting<DelayValue>& delay,
                             QWidget* parent) {
    return switchButton(
        QStringLiteral("Delay, ") + nameOf(channel), {QStringLiteral("ON"), QStringLiteral("OFF")},
        [delay] { return !delay.value().bypass; },
        [delay] { delay.edit([](DelayValue& value) { value.bypass = !value.bypass; }); }, parent);
}

}  // namespace Corvane
