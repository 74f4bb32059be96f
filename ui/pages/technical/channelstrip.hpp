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
    /// `height` is the least of the fader's track, which grows with the strip.
    ChannelStrip(AppModel& model, std::string_view channel, const QString& title, double height,
                 QWidget* parent);
};

/// The buttons of a channel's gain: "MUTE", lit while the channel is muted, and its polarity, "0°" or,
/// lit, "180°". A click inverts what the button shows. Screen readers know them by `name`, that of the
/// channel on the page.
Kit::PillButton* muteButton(AppModel& model, std::string_view channel, const QString& name, QWidget* parent);
Kit::PillButton* polarityButton(AppModel& model, std::string_view channel, const QString& name,
                                QWidget* parent);

}  // namespace Corvane
