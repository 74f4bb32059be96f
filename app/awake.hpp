#pragma once

#include "app/model/appmodel.hpp"

#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace Corvane {

/// While the link is online, asks the desktop not to blank the screen and the system not to sleep. Where
/// there are no such services nothing happens. The model must outlive it.
class Awake final : public QObject {
public:
    explicit Awake(AppModel& model);
    ~Awake() override;

private:
    void setOnline(bool now);
    void keepScreen();
    void keepSystem();
    void releaseScreen(unsigned cookie) const;

    bool online = false;
    std::optional<unsigned> screenCookie;
    QDBusUnixFileDescriptor systemLock;  // the system may sleep again once it is closed
    std::shared_ptr<Watcher> watching;
};

}  // namespace Corvane
