#include "app/awake.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace Corvane {

namespace {

const QString program = QStringLiteral("Corvane");
const QString reason = QStringLiteral("As caixas estão conectadas");

QDBusMessage screenCall(const QString& method) {
    const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
    return QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/ScreenSaver"), service,
                                          method);
}

// Calls without starting a service that does not run, and hands over the answer if there is one.
template <class Value, class Use>
void ask(QObject* owner, const QDBusConnection& bus, QDBusMessage call, Use use) {
    if (!bus.isConnected()) return;
    call.setAutoStartService(false);
    auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call), owner);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, owner, [answer, use] {
        const QDBusPendingReply<Value> reply = *answer;
        if (!reply.isError()) use(reply.value());
        answer->deleteLater();
    });
}

}  // namespace

Awake::Awake(AppModel& model)
    : watching(watch([&model] { return model.status.value().isOnline(); },
                     [this](bool now) { setOnline(now); })) {}

Awake::~Awake() {
    watching.reset();
    setOnline(false);
}

void Awake::setOnline(bool now) {
    if (now == online) return;
    online = now;
    if (online) {
        keepScreen();
        keepSystem();
        return;
    }
    if (screenCookie) releaseScreen(*screenCookie);
    screenCookie.reset();
    systemLock = {};
}

// An answer may come when the link has ended already.
void Awake::keepScreen() {
    ask<unsigned>(this, QDBusConnection::sessionBus(),
                  screenCall(QStringLiteral("Inhibit")) << program << reason, [this](unsigned cookie) {
                      if (!online || screenCookie) return releaseScreen(cookie);
                      screenCookie = cookie;
                  });
}

void Awake::releaseScreen(unsigned cookie) const {
    QDBusConnection::sessionBus().send(screenCall(QStringLiteral("UnInhibit")) << cookie);
}

void Awake::keepSystem() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep:idle") << program << reason << QStringLiteral("block");
    ask<QDBusUnixFileDescriptor>(this, QDBusConnection::systemBus(), call,
                                 [this](const QDBusUnixFileDescriptor& lock) {
                                     if (online) systemLock = lock;
                                 });
}

}  // namespace Corvane
