#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/pillbutton.hpp"

#include <QString>
#include <QWidget>

#include <string_view>

namespace Corvane {

/// Gain, mute and polarity of a channel, with its meter.
class ChannelStrip final : public QWidget {
public:
    /// `height` is that of the fader's track.
    ChannelStrip(AppModel& model, std::string_view channel, const QString& title, double height,
                 QWidget* parent);
};

/// "MUTE", lit while the channel is muted, and "0°" or, lit, "180°" for its polarity. A click
/// inverts what the button shows.
Kit::PillButton* muteButton(AppModel& model, std::string_view channel, QWidget* parent);
Kit::PillButton* polarityButton(AppModel& model, std::string_view channel, QWidget* parent);

}  // namespace Corvane
