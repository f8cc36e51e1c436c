#pragma once

#include "platform/Log.h"
#include "platform/Notifications.h"

#include <QObject>
#include <list>
#include <map>
#include <memory>
#include <string>

class QDBusPendingCallWatcher;

namespace platform::qt {

/// The session's notification service, org.freedesktop.Notifications. A notice with an identifier
/// replaces the one that was delivered with it before.
class DesktopNotifications final : public QObject, public Notifications {
  public:
    /// `desktopEntry` is the name of the .desktop file, without its ending.
    DesktopNotifications(std::string programName, std::string desktopEntry, Log& log);

    void deliver(const Notification& notification) override;

    /// Waits until the service has what was delivered, for a second at most after that. For the end
    /// of the process: the toolkit sends from a thread of its own, which would end with the message
    /// unsent.
    void flush();

  private:
    struct Pending {
        std::string identifier;
        std::unique_ptr<QDBusPendingCallWatcher, void (*)(QDBusPendingCallWatcher*)> watcher;
    };

    void finish(std::list<Pending>::iterator call);
    void reportOnce(const std::string& reason);

    std::string programName;
    std::string desktopEntry;
    Log& log;
    std::map<std::string, unsigned> delivered; ///< the service's numbers, by identifier
    std::list<Pending> pending;
    bool reported = false;
};

} // namespace platform::qt
