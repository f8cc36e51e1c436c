#pragma once

#include "platform/Log.h"

#include <QObject>
#include <functional>
#include <string>

namespace platform::qt {

/// Notifications to every program of the session that listens, as a signal on the session bus:
/// path "/local/DistributedNotifications", interface "local.DistributedNotifications", member
/// "Posted", arguments the name of the notification and the object that narrows it down, both
/// text. Anybody in the session can post one.
class DistributedNotifications final : public QObject {
    Q_OBJECT

  public:
    using Handler = std::function<void(const std::string& name, const std::string& object)>;

    /// Does not wait. Without a session bus nothing is sent, which is logged.
    static void post(const std::string& name, const std::string& object, Log& log);

    /// `handler` hears of every notification from now on, own ones too, from the run loop. False
    /// without a session bus.
    bool listen(Handler handler);

  private slots:
    void posted(const QString& name, const QString& object);

  private:
    Handler handlePosted;
};

} // namespace platform::qt
