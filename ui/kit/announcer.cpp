#include "ui/kit/announcer.hpp"

namespace Kit {

Announcer::Announcer(QWidget* window)
    : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setGeometry(0, 0, 1, 1);
    hide();
}

// Screen readers speak a notification when it appears, so it is hidden before it says anything else.
void Announcer::say(const QString& text) {
    if (text.isEmpty()) return;
    hide();
    setAccessibleName(text);
    show();
}

void announce(const QWidget& from, const QString& text) {
    for (QWidget* const child : from.window()->findChildren<QWidget*>())
        if (auto* const announcer = dynamic_cast<Announcer*>(child)) return announcer->say(text);
}

}  // namespace Kit
