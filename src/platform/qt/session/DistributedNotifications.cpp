#include "platform/qt/session/DistributedNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace platform::qt {

namespace {

constexpr const char* path = "/local/DistributedNotifications";
constexpr const char* interfaceName = "local.DistributedNotifications";
constexpr const char* member = "Posted";

} // namespace

void DistributedNotifications::post(const std::string& name, const std::string& object, Log& log) {
    auto signal = QDBusMessage::createSignal(path, interfaceName, member);
    signal << QString::fromStdString(name) << QString::fromStdString(object);
    if (!QDBusConnection::sessionBus().send(signal))
        log.write("no session bus: the notification " + name + " cannot be sent");
}

bool DistributedNotifications::listen(Handler handler) {
    handlePosted = std::move(handler);
    return QDBusConnection::sessionBus().connect({}, path, interfaceName, member, this,
                                                 SLOT(posted(QString, QString)));
}

void DistributedNotifications::posted(const QString& name, const QString& object) {
    handlePosted(name.toStdString(), object.toStdString());
}

} // namespace platform::qt
