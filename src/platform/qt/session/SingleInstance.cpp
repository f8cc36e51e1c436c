#include "platform/qt/session/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVirtualObject>

namespace platform::qt {

namespace {

constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* otherDisplay = "local.Error.OtherDisplay";
// In what a call to activate says of its surroundings.
constexpr const char* displayKey = "display";
constexpr const char* silentKey = "silent"; // it only asks whether there is one on its display
constexpr int answerMilliseconds = 1000;
constexpr unsigned doNotQueue = 4; // of RequestName

QString objectPath(const std::string& name) {
    return '/' + QString::fromStdString(name).replace('.', '/').replace('-', '_');
}

} // namespace

class SingleInstance::Object final : public QDBusVirtualObject {
  public:
    explicit Object(std::string ownDisplay) : display(std::move(ownDisplay)) {}

    QString introspect(const QString&) const override {
        return "<interface name=\"org.freedesktop.Application\">"
               "<method name=\"Activate\"><arg type=\"a{sv}\" direction=\"in\"/></method>"
               "<method name=\"Open\"><arg type=\"as\" direction=\"in\"/>"
               "<arg type=\"a{sv}\" direction=\"in\"/></method>"
               "<method name=\"ActivateAction\"><arg type=\"s\" direction=\"in\"/>"
               "<arg type=\"av\" direction=\"in\"/><arg type=\"a{sv}\" direction=\"in\"/></method>"
               "</interface>";
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        // A caller may leave the interface out.
        if (!message.interface().isEmpty() && message.interface() != interfaceName) return false;
        const auto& member = message.member();
        // There are no files to open and no actions, so each of them just activates.
        if (member != "Activate" && member != "Open" && member != "ActivateAction") return false;
        if (isForAnotherDisplay(message)) {
            bus.send(message.createErrorReply(otherDisplay, QString::fromStdString(display)));
            return true;
        }
        bus.send(message.createReply());
        const bool silent = surroundingsIn(message).value(silentKey).toBool();
        if (activated && !silent) activated();
        return true;
    }

    std::function<void()> activated;

  private:
    static QVariantMap surroundingsIn(const QDBusMessage& message) {
        if (message.member() != "Activate" || message.arguments().isEmpty()) return {};
        return qdbus_cast<QVariantMap>(message.arguments().constFirst());
    }

    bool isForAnotherDisplay(const QDBusMessage& message) const {
        const std::string asked =
            surroundingsIn(message).value(displayKey).toString().toStdString();
        return !asked.empty() && !display.empty() && asked != display;
    }

    std::string display;
};

SingleInstance::SingleInstance(std::string busName, Log& logger, std::string ownDisplay)
    : name(std::move(busName)),
      display(std::move(ownDisplay)),
      log(logger),
      link(log),
      object(std::make_unique<Object>(display)) {
    link.onReturn([this] { claimAgain(); });
}

SingleInstance::~SingleInstance() = default;

void SingleInstance::onActivate(std::function<void()> handler) {
    object->activated = std::move(handler);
}

bool SingleInstance::claim(bool activates) {
    if (!link.connection().isConnected()) {
        log.write("no session bus: the program is not reached over it");
        return true;
    }
    switch (requestName(doNotQueue)) {
    case Claim::taken:
        if (callOwner(activates)) return false;
        (void)requestName(0); // it gets the name when the other one ends
        return true;
    case Claim::unanswered:
        log.write("the session bus refuses the name " + name);
        return true;
    default:
        return true;
    }
}

void SingleInstance::claimAgain() {
    (void)requestName(0);
    log.write("the session bus is back");
}

SingleInstance::Claim SingleInstance::requestName(unsigned flags) {
    QDBusConnection bus = link.connection();
    // The object comes first: whoever sees the name may call it.
    bus.registerVirtualObject(objectPath(name), object.get());
    auto request = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus", "RequestName");
    request << QString::fromStdString(name) << flags;
    const QDBusReply<unsigned> reply = bus.call(request, QDBus::Block, answerMilliseconds);
    if (!reply.isValid()) return Claim::unanswered;
    constexpr Claim claims[] = {Claim::granted, Claim::queued, Claim::taken, Claim::granted};
    return reply.value() < 1 || reply.value() > 4 ? Claim::unanswered : claims[reply.value() - 1];
}

/// False when the owner of the name is none of this display.
bool SingleInstance::callOwner(bool activates) {
    auto activate = QDBusMessage::createMethodCall(QString::fromStdString(name), objectPath(name),
                                                   interfaceName, "Activate");
    QVariantMap surroundings;
    if (!display.empty()) surroundings[displayKey] = QString::fromStdString(display);
    if (!activates) surroundings[silentKey] = true;
    activate << surroundings;
    const auto reply = link.connection().call(activate, QDBus::Block, answerMilliseconds);
    return reply.errorName() != otherDisplay;
}

} // namespace platform::qt
