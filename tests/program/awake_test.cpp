#include "app/awake.hpp"
#include "app/model/uiexecutor.hpp"
#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>

#include <fcntl.h>
#include <unistd.h>

#include <array>

namespace {

using Corvane::Status;

// A bus of its own that stands for the session's and the system's.
struct PrivateBus {
    Tests::Process daemon{{"/bin/sh", "-c", "exec dbus-daemon --session --nofork --print-address"}};
    const QString address = QString::fromStdString(daemon.line());

    PrivateBus() {
        for (const char* const variable : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            qputenv(variable, address.toUtf8());
    }
};

// Keeps the screen on and the system awake, for as long as it is asked to.
class Services final : public QDBusVirtualObject {
public:
    explicit Services(const QString& address)
        : bus(QDBusConnection::connectToBus(address, QStringLiteral("services"))) {
        for (const char* const name : {"org.freedesktop.ScreenSaver", "org.freedesktop.login1"})
            bus.registerService(QLatin1String(name));
        bus.registerVirtualObject(QStringLiteral("/org/freedesktop"), this, QDBusConnection::SubPath);
    }
    ~Services() override { QDBusConnection::disconnectFromBus(QStringLiteral("services")); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        ++calls;
        const bool ofScreen = call.interface() == QLatin1String("org.freedesktop.ScreenSaver");
        if (call.member() == QLatin1String("UnInhibit")) {
            if (call.arguments().at(0).toUInt() == cookie) --screen;
        } else if (ofScreen) {
            ++screen;
            connection.send(call.createReply(cookie));
        } else {
            what = call.arguments().at(0).toString();
            std::array<int, 2> ends{};
            if (::pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) return false;
            lock = ends[0];
            connection.send(call.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))));
            ::close(ends[1]);
        }
        return true;
    }

    // The program has closed its end of the lock, which nothing is ever written into.
    bool systemMaySleep() const {
        char byte = 0;
        return ::read(lock, &byte, 1) == 0;
    }

    int calls = 0;
    int screen = 0;  // reasons to keep it on
    QString what;    // the lock keeps from happening

private:
    static constexpr unsigned cookie = 7;
    QDBusConnection bus;
    int lock = -1;
};

template <class Condition>
bool comes(Condition condition) {
    QDeadlineTimer limit(10000);
    while (!condition() && !limit.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 100);
    return condition();
}

}  // namespace

TEST(AwakeTest, KeepsTheScreenOnAndTheSystemAwakeWhileOnline) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    const PrivateBus bus;
    Services services(bus.address);
    Corvane::Surroundings surroundings;
    surroundings.executor = std::make_shared<Corvane::UiExecutor>();
    surroundings.serialPorts = [] { return std::vector<std::string>(); };
    Corvane::AppModel model(std::move(surroundings));
    const Corvane::Awake awake(model);

    model.status = Status::online("line");
    ASSERT_TRUE(comes([&] { return services.calls == 2; }));
    EXPECT_EQ(services.screen, 1);
    EXPECT_EQ(services.what, QStringLiteral("sleep:idle"));
    EXPECT_FALSE(services.systemMaySleep());

    model.status = Status::error("gone");
    EXPECT_TRUE(comes([&] { return services.screen == 0 && services.systemMaySleep(); }));

    // The answers come when the link has ended already.
    model.status = Status::online("line");
    model.status = Status();
    EXPECT_TRUE(comes([&] {
        return services.calls == 6 && services.screen == 0 && services.systemMaySleep();
    })) << services.calls
        << ' ' << services.screen;
}
