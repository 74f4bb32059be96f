#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <functional>
#include <string_view>

namespace Corvane {

/// Changes a band of a channel's equaliser and keeps its gain and Q within their limits.
void editBand(AppModel& model, std::string_view channel, int band,
              const std::function<void(Wendril::PeqValue&)>& change);

/// The column titles over the rows.
class PeqHeader final : public QWidget {
public:
    explicit PeqHeader(QWidget* parent);
};

/// One band of a channel's equaliser.
class PeqRow final : public QWidget {
public:
    /// Bands count from 0.
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
