#include "app/motion.hpp"

#include "ui/kit/animation.hpp"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStyle>

#include <algorithm>

namespace Corvane {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

// KDE's factor comes as a text or as a number.
struct {
    const char *nameSpace, *key;
    double reducedAt;
} constexpr signs[] = {
    {"org.freedesktop.appearance", "reduced-motion", 1},
    {"org.gnome.desktop.interface", "enable-animations", 0},
    {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", 0},
};

}  // namespace

Motion::Motion() {
    apply();
    if (QDBusConnection::sessionBus().isConnected()) ask();
}

void Motion::ask() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this, SLOT(change(QDBusMessage)));
    qDBusRegisterMetaType<Settings>();
    QStringList nameSpaces;
    for (const auto& sign : signs)
        nameSpaces << QLatin1String(sign.nameSpace);
    auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call << nameSpaces), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        if (const QDBusPendingReply<Settings> reply = *answer; !reply.isError()) settings = reply.value();
        apply();
        answer->deleteLater();
    });
}

void Motion::change(const QDBusMessage& told) {
    const QVariantList values = told.arguments();
    if (told.signature() != QStringLiteral("ssv")) return;
    settings[values[0].toString()][values[1].toString()] = values[2].value<QDBusVariant>().variant();
    apply();
}

bool Motion::isReducedBy(const Settings& settings) {
    return std::ranges::any_of(signs, [&](const auto& sign) {
        const QVariant value = settings[QLatin1String(sign.nameSpace)][QLatin1String(sign.key)];
        bool isNumber = false;
        return value.toDouble(&isNumber) == sign.reducedAt && isNumber;
    });
}

void Motion::apply() const {
    const bool isStill = QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
    Kit::Animation::reduceMotion(isStill || isReducedBy(settings));
}

}  // namespace Corvane
