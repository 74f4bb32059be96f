#pragma once

#include "app/appmodel.hpp"

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

/// The two keys of a channel's gain; the second reads "0°" or "180°".
Kit::PillButton* muteKey(AppModel& model, std::string_view channel, QWidget* parent);
Kit::PillButton* polarityKey(AppModel& model, std::string_view channel, QWidget* parent);

}  // namespace Corvane
