#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QString>
#include <functional>

namespace platform::qt {

/// What a host of status notifier items does with one. Hosts differ where the protocol is silent.
struct ItemHost {
    /// It passes every click on, if the item has no menu; others open the item's menu themselves.
    bool passesClicks = false;
    /// It draws a symbolic icon in the colour of its panel.
    bool tintsIcons = true;
    /// Its panel has neither the colours of the desktop nor others that anybody is told.
    bool hasOwnColours = false;
    /// With a click it tells where on the desktop that was.
    bool tellsPlaces = true;
};

/// Tells the callers on a bus apart by the programs that they are. Main thread.
class ItemHosts final : public QObject {
  public:
    /// Calls `known`, at once or from the run loop when the bus has answered.
    void tell(const QDBusConnection& bus, const QString& caller,
              std::function<void(ItemHost)> known);

  private:
    QHash<QString, ItemHost> hosts; ///< by their names on the bus, which never come back
};

} // namespace platform::qt
