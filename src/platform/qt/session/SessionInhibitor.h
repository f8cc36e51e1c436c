#pragma once

#include "platform/Log.h"
#include "platform/WakeLock.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <cstdint>
#include <map>
#include <string>

namespace platform::qt {

/// Asks the programs of the session that blank, lock or power down the displays to leave them on:
/// whichever of them run, and those that start later. They forget what was asked of them when the
/// program leaves the session bus. Main thread.
class SessionInhibitor final : public QObject, public WakeLock {
  public:
    /// `application` is the name that the services show.
    SessionInhibitor(std::string application, Log& log);
    ~SessionInhibitor() override;

    /// Whether there is anybody who was asked, which the bus tells in half a second at most. What
    /// they answer is not waited for; a refusal is logged.
    bool keep(AssertionId id, const std::string& reason) override;
    void release(AssertionId id) override;
    std::string_view missing() const override;

    /// Releases everything and waits, half a second in all at most, until the services know: the
    /// toolkit sends from a thread of its own, which would end with the process.
    void releaseAll();

  private:
    struct Service;
    struct Held {
        std::string reason;
        std::map<const Service*, std::uint32_t> cookies; ///< by the service that gave them
    };
    static const Service services[];

    void ask(const Service& service, std::uint32_t id, int attempt = 1);
    void answered(const Service& service, std::uint32_t id, int attempt, const QDBusMessage& reply);
    void ownerChanged(const QString& name, const QString& newOwner);
    static QDBusMessage undoing(const Service& service, std::uint32_t cookie);

    std::string application;
    Log& log;
    QDBusServiceWatcher watcher;
    std::map<std::uint32_t, Held> held;
};

} // namespace platform::qt
