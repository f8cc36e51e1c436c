#include "platform/qt/session/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace platform::qt {

namespace {

constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr int answerMilliseconds = 2000;

QString objectPath(const std::string& name) {
    return '/' + QString::fromStdString(name).replace('.', '/').replace('-', '_');
}

} // namespace

class SingleInstance::Object final : public QDBusVirtualObject {
  public:
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
        bus.send(message.createReply());
        if (activated) activated();
        return true;
    }

    std::function<void()> activated;
};

SingleInstance::SingleInstance(std::string busName, Log& logger)
    : name(std::move(busName)), log(logger), object(std::make_unique<Object>()) {}

SingleInstance::~SingleInstance() = default;

void SingleInstance::onActivate(std::function<void()> handler) {
    object->activated = std::move(handler);
}

bool SingleInstance::claim() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log.write("no session bus: a second start cannot be noticed");
        return true;
    }
    const QString service = QString::fromStdString(name);
    const QString path = objectPath(name);
    // The object comes first: whoever sees the name may call it.
    bus.registerVirtualObject(path, object.get());
    const auto reply =
        bus.interface()->registerService(service, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return true;
    if (!reply.isValid()) {
        log.write("the session bus refuses the name " + name + ": " +
                  reply.error().message().toStdString());
        return true;
    }
    auto activate = QDBusMessage::createMethodCall(service, path, interfaceName, "Activate");
    activate << QVariantMap{};
    bus.call(activate, QDBus::Block, answerMilliseconds);
    return false;
}

} // namespace platform::qt
