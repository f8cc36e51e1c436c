#include "platform/qt/session/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace platform::qt {

namespace {

constexpr int answerMilliseconds = 1000;

} // namespace

DesktopNotifications::DesktopNotifications(std::string name, std::string entry, Log& logger)
    : programName(std::move(name)), desktopEntry(std::move(entry)), log(logger) {}

void DesktopNotifications::deliver(const Notification& notification) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        reportOnce("there is no session bus");
        return;
    }
    QVariantMap hints{{"desktop-entry", QString::fromStdString(desktopEntry)}};
    if (notification.sound.empty())
        hints["suppress-sound"] = true;
    else if (notification.sound == defaultSound)
        hints["sound-name"] = "message-new-instant";
    else
        hints["sound-name"] = QString::fromStdString(notification.sound);
    const auto earlier = delivered.find(notification.identifier);
    const unsigned replaced = earlier == delivered.end() ? 0 : earlier->second;
    constexpr int timeoutOfTheService = -1;
    auto message = QDBusMessage::createMethodCall("org.freedesktop.Notifications",
                                                  "/org/freedesktop/Notifications",
                                                  "org.freedesktop.Notifications", "Notify");
    message << QString::fromStdString(programName) << replaced
            << QString::fromStdString(desktopEntry) << QString::fromStdString(notification.title)
            << QString::fromStdString(notification.text).toHtmlEscaped() << QStringList{} << hints
            << timeoutOfTheService;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, answerMilliseconds));
    // Later: it goes from inside its own signal.
    const auto call = pending.insert(
        pending.end(), {notification.identifier,
                        {watcher, [](QDBusPendingCallWatcher* ended) { ended->deleteLater(); }}});
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, call] { finish(call); });
}

void DesktopNotifications::finish(std::list<Pending>::iterator call) {
    const QDBusPendingReply<unsigned> reply = *call->watcher;
    if (reply.isError())
        reportOnce(reply.error().message().toStdString());
    else if (!call->identifier.empty())
        delivered[call->identifier] = reply.value();
    pending.erase(call);
}

void DesktopNotifications::flush() {
    while (!pending.empty()) {
        const auto call = pending.begin();
        call->watcher->disconnect(this); // the wait itself may emit the signal
        call->watcher->waitForFinished();
        finish(call);
    }
}

void DesktopNotifications::reportOnce(const std::string& reason) {
    if (std::exchange(reported, true)) return;
    log.write("notices cannot be shown: " + reason +
              "; a notification service such as dunst or the desktop's own must run");
}

} // namespace platform::qt
