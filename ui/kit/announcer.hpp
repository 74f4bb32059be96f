#pragma once

#include <QString>
#include <QWidget>

namespace Kit {

/// Speaks to users of screen readers; nothing of it is seen. A window has one of these.
class Announcer final : public QWidget {
public:
    explicit Announcer(QWidget* window);

    void say(const QString& text);
};

/// Speaks by the announcer of the window that the widget is in. Without one nothing is said.
void announce(const QWidget& from, const QString& text);

}  // namespace Kit
