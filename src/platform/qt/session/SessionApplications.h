#pragma once

#include "platform/Log.h"

#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

namespace platform::qt {

/// Every name on the session's bus, which is given that time; an error where it does not tell.
QDBusReply<QStringList> namesOnBus(int milliseconds);

/// The programs of the session that have a name on its bus: an application's is its identifier.
class SessionApplications final : public QObject {
    Q_OBJECT

  public:
    /// `ownName` is not one of the others.
    SessionApplications(std::string ownName, Log& log);

    /// The well-known names on the bus, but the own one. One round trip to the bus, which is given
    /// a second; none without a session bus.
    std::vector<std::string> others() const;

    /// Called from the run loop when a program with that name comes up. One name an object.
    void onStart(const std::string& name, std::function<void()> handler);

    /// Called from the run loop when the session's bus has gone.
    void onSessionEnd(std::function<void()> handler);

  private Q_SLOTS:
    void disconnected();

  private:
    std::string ownName;
    Log& log;
    QDBusServiceWatcher starts;
    std::function<void()> ended;
};

} // namespace platform::qt
