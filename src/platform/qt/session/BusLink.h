#pragma once

#include "platform/Log.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>
#include <functional>
#include <string>

namespace platform::qt {

/// The process's connection to the session bus, and another one when the bus has gone and come back
/// at the same address. Main thread.
class BusLink final : public QObject {
    Q_OBJECT

  public:
    /// Asks the bus for a sign of life, for two seconds at most, before anything else does: whoever
    /// asks one that does not answer is held up for half a minute. Such a bus is none for this
    /// process, until it answers. To be made before an application object with windows, whose
    /// toolkit asks the bus. The log must outlive the object.
    explicit BusLink(Log& log);

    /// Needs an application object. Not connected where there is no bus.
    QDBusConnection connection();

    /// Called from the run loop when `connection` is a new one, of a bus that has come back.
    void onReturn(std::function<void()> handler) { returned = std::move(handler); }

  private slots:
    void lost();

  private:
    void use(const QDBusConnection& connection);
    void lookForBus();

    std::string address; ///< empty where only the bus's own library could find it
    bool isSilent = false;
    QDBusConnection current{QString()};
    bool isUsed = false;
    int returns = 0;
    QTimer search;
    std::function<void()> returned;
};

} // namespace platform::qt
