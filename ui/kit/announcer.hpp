#pragma once

#include <QString>
#include <QWidget>

#include <array>

namespace Kit {

/// A text that screen readers speak when it appears; nothing of it is seen.
class Announcement final : public QWidget {
public:
    explicit Announcement(QWidget* window);

    void say(const QString& text);
};

/// Speaks to users of screen readers. A window has one of these. Screen readers ask for a text some time
/// after it has appeared, so the latest few texts are kept.
class Announcer final : public QObject {
public:
    explicit Announcer(QWidget* window);

    void say(const QString& text);

private:
    std::array<Announcement*, 8> announcements{};
    std::size_t next = 0;
};

/// Speaks by the announcer of the window that the widget is in. Without one nothing is said.
void announce(const QWidget& from, const QString& text);

}  // namespace Kit
