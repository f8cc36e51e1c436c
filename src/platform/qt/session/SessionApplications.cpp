#include "platform/qt/session/SessionApplications.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace platform::qt {

namespace {

constexpr int answerMilliseconds = 1000;

} // namespace

QDBusReply<QStringList> namesOnBus(int milliseconds) {
    return QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "ListNames"),
        QDBus::Block, milliseconds);
}

SessionApplications::SessionApplications(std::string name, Log& logger)
    : ownName(std::move(name)), log(logger) {}

std::vector<std::string> SessionApplications::others() const {
    if (!QDBusConnection::sessionBus().isConnected()) return {};
    const auto reply = namesOnBus(answerMilliseconds);
    if (!reply.isValid()) {
        log.write("the session bus does not tell which programs run: " +
                  reply.error().message().toStdString());
        return {};
    }
    std::vector<std::string> result;
    for (const QString& present : reply.value())
        if (std::string name = present.toStdString(); !name.starts_with(':') && name != ownName)
            result.push_back(std::move(name));
    return result;
}

void SessionApplications::onStart(const std::string& name, std::function<void()> handler) {
    starts.disconnect(this);
    connect(&starts, &QDBusServiceWatcher::serviceRegistered, this, std::move(handler));
    starts.setConnection(QDBusConnection::sessionBus());
    starts.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    starts.setWatchedServices({QString::fromStdString(name)});
}

void SessionApplications::onSessionEnd(std::function<void()> handler) {
    ended = std::move(handler);
    QDBusConnection::sessionBus().connect({}, "/org/freedesktop/DBus/Local",
                                          "org.freedesktop.DBus.Local", "Disconnected", this,
                                          SLOT(disconnected()));
}

void SessionApplications::disconnected() {
    ended();
}

} // namespace platform::qt
