#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/pillbutton.hpp"

#include <QString>
#include <QWidget>

#include <string_view>

namespace Corvane {

/// Level, mute and polarity of a channel.
class ChannelStrip final : public QWidget {
public:
    /// `height` of the fader's track.
    ChannelStrip(AppModel& model, std::string_view channel, const QString& title, double height,
                 QWidget* parent);
};

/// The two buttons of a channel's gain; the second reads "0°" or "180°".
Kit::PillButton* muteButton(AppModel& model, std::string_view channel, QWidget* parent);
Kit::PillButton* polarityButton(AppModel& model, std::string_view channel, QWidget* parent);

}  // namespace Corvane
