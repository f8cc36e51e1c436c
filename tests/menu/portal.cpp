// A desktop portal that knows one setting: the wish for dark windows. Runs until it is killed.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <cstdio>

namespace {

class Portal final : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() != "org.freedesktop.portal.Settings" ||
            message.member() != "Read" ||
            message.arguments() != QVariantList{"org.freedesktop.appearance", "color-scheme"})
            return false;
        const QDBusVariant dark(QVariant(1U));
        // The call answers with a variant in a variant.
        return bus.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(dark)))));
    }
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Portal portal;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject("/org/freedesktop/portal/desktop", &portal);
    if (!bus.registerService("org.freedesktop.portal.Desktop")) return 1;
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
