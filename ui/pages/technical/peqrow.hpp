#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <functional>
#include <string_view>

namespace Corvane {

/// Changes a band of a channel's equaliser, within what the board takes.
void editBand(AppModel& model, std::string_view channel, int band,
              const std::function<void(Wendril::PeqValue&)>& change);

/// The titles over the columns of the rows below.
class PeqHeader final : public QWidget {
public:
    explicit PeqHeader(QWidget* parent);
};

/// One band of a channel's equaliser, from 0.
class PeqRow final : public QWidget {
public:
    PeqRow(AppModel& model, std::string_view channel, int band, QWidget* parent);

private:
    void show(const Wendril::PeqValue& value);

    Kit::Caption* number;
    Kit::LampSwitch* on;
    Kit::WellMenu<std::uint8_t>* type;
    Kit::ScrubField* fc;
    Kit::ScrubField* q;
    Kit::ScrubField* gain;
};

}  // namespace Corvane
