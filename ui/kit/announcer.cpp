#include "ui/kit/announcer.hpp"

namespace Kit {

Announcement::Announcement(QWidget* window)
    : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setGeometry(0, 0, 1, 1);
    hide();
}

// It is spoken when it appears, so it is hidden before it says anything else.
void Announcement::say(const QString& text) {
    hide();
    setAccessibleName(text);
    show();
}

Announcer::Announcer(QWidget* window)
    : QObject(window) {
    for (Announcement*& each : announcements)
        each = new Announcement(window);
}

void Announcer::say(const QString& text) {
    if (text.isEmpty()) return;
    announcements.at(next)->say(text);
    next = (next + 1) % announcements.size();
}

void announce(const QWidget& from, const QString& text) {
    for (QObject* const each : from.window()->findChildren<QObject*>())
        if (auto* const announcer = dynamic_cast<Announcer*>(each)) return announcer->say(text);
}

}  // namespace Kit
