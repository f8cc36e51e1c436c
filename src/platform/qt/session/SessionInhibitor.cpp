#include "platform/qt/session/SessionInhibitor.h"

#include "platform/qt/session/SessionApplications.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>
#include <vector>

// Desktops do not agree on one interface, and where several run each has a part of its own: on Xfce
// the power manager switches the displays off and a screen saver of the user's choice locks them.

namespace platform::qt {

struct SessionInhibitor::Service {
    const char* name; ///< also the name of the interface, unless that is given
    const char* path;
    const char* interface;
    const char* undo;
    bool isSessionManager; ///< takes a window and what to inhibit besides
};

namespace {

constexpr int waitMilliseconds = 500;
constexpr int answerMilliseconds = 5000;
constexpr unsigned noWindow = 0;
constexpr unsigned idle = 8; ///< of the session manager's flags: the session does not become idle

// Xfce's power manager takes its name before it has anything to talk to.
constexpr int attempts = 5;
constexpr int pauseMilliseconds = 1000;

bool isNotReady(const QDBusError& error) {
    return error.type() == QDBusError::UnknownObject ||
           error.type() == QDBusError::UnknownInterface ||
           error.type() == QDBusError::UnknownMethod;
}

QDBusMessage call(const char* service, const char* path, const char* interface,
                  const char* method) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setAutoStartService(false); // a user who runs none of these wants none
    return message;
}

} // namespace

const SessionInhibitor::Service SessionInhibitor::services[] = {
    {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver",
     "UnInhibit", false},
    {"org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
     "org.freedesktop.PowerManagement.Inhibit", "UnInhibit", false},
    {"org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager",
     "Uninhibit", true},
};

SessionInhibitor::SessionInhibitor(std::string name, Log& logger)
    : application(std::move(name)), log(logger) {
    watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& service, const QString&, const QString& newOwner) {
                ownerChanged(service, newOwner);
            });
}

SessionInhibitor::~SessionInhibitor() {
    releaseAll();
}

void SessionInhibitor::releaseAll() {
    std::vector<QDBusPendingCall> undone;
    for (const auto& [id, one] : held)
        for (const auto& [service, cookie] : one.cookies)
            undone.push_back(QDBusConnection::sessionBus().asyncCall(undoing(*service, cookie),
                                                                     waitMilliseconds));
    for (QDBusPendingCall& call : undone)
        call.waitForFinished();
    held.clear();
    watcher.setWatchedServices({});
}

bool SessionInhibitor::keep(AssertionId id, const std::string& reason) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    held[id].reason = reason;
    if (held.size() == 1) {
        watcher.setConnection(bus);
        for (const Service& service : services)
            watcher.addWatchedService(service.name);
    }
    const QStringList running = namesOnBus(waitMilliseconds);
    bool any = false;
    for (const Service& service : services) {
        if (!running.contains(QLatin1String(service.name))) continue;
        ask(service, id);
        any = true;
    }
    return any;
}

void SessionInhibitor::release(std::uint32_t id) {
    const auto one = held.find(id);
    if (one == held.end()) return;
    for (const auto& [service, cookie] : one->second.cookies)
        QDBusConnection::sessionBus().send(undoing(*service, cookie));
    held.erase(one);
    if (held.empty()) watcher.setWatchedServices({});
}

void SessionInhibitor::ask(const Service& service, std::uint32_t id, int attempt) {
    QDBusMessage message = call(service.name, service.path, service.interface, "Inhibit");
    message << QString::fromStdString(application);
    if (service.isSessionManager) message << noWindow;
    message << QString::fromStdString(held[id].reason);
    if (service.isSessionManager) message << idle;
    auto* waiting = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(message, answerMilliseconds), this);
    connect(waiting, &QDBusPendingCallWatcher::finished, this,
            [this, &service, id, attempt, waiting] {
                answered(service, id, attempt, waiting->reply());
                waiting->deleteLater();
            });
}

// A number that is not kept is given back: that of an assertion released meanwhile, or the second
// one of a service that started just when it was asked.
void SessionInhibitor::answered(const Service& service, std::uint32_t id, int attempt,
                                const QDBusMessage& reply) {
    const auto one = held.find(id);
    const QDBusPendingReply<unsigned> answer(reply);
    if (answer.isValid()) {
        if (one == held.end() || !one->second.cookies.emplace(&service, answer.value()).second)
            QDBusConnection::sessionBus().send(undoing(service, answer.value()));
        return;
    }
    if (one == held.end()) return;
    if (isNotReady(answer.error()) && attempt < attempts) {
        QTimer::singleShot(pauseMilliseconds, this, [this, &service, id, attempt] {
            if (held.contains(id)) ask(service, id, attempt + 1);
        });
        return;
    }
    log.write("the displays may go to sleep: " + std::string(service.name) +
              " answers: " + reply.errorMessage().toStdString());
}

// A new owner knows nothing of what the old one was asked.
void SessionInhibitor::ownerChanged(const QString& name, const QString& newOwner) {
    for (const Service& service : services) {
        if (name != service.name) continue;
        for (auto& [id, one] : held) {
            one.cookies.erase(&service);
            if (!newOwner.isEmpty()) ask(service, id);
        }
    }
}

QDBusMessage SessionInhibitor::undoing(const Service& service, std::uint32_t cookie) {
    QDBusMessage message = call(service.name, service.path, service.interface, service.undo);
    message << cookie;
    return message;
}

std::string_view SessionInhibitor::missing() const {
    return "no program of the session can be asked to keep the displays on; one that switches them "
           "off, such as the desktop's power manager, is asked when it starts";
}

} // namespace platform::qt
