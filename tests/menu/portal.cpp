// A desktop portal that knows one setting: the wish for dark windows. With an argument the wish
// comes only when somebody calls Darken, and is told. Runs until it is killed.

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

    explicit Portal(bool fromTheStart) : dark(fromTheStart) {}

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() == "Darken") {
            dark = true;
            auto signal =
                QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                           "org.freedesktop.portal.Settings", "SettingChanged");
            signal << "org.freedesktop.appearance"
                   << "color-scheme" << QVariant::fromValue(QDBusVariant(1U));
            return bus.send(signal) && bus.send(message.createReply());
        }
        if (message.interface() != "org.freedesktop.portal.Settings" ||
            message.member() != "Read" ||
            message.arguments() != QVariantList{"org.freedesktop.appearance", "color-scheme"})
            return false;
        const QDBusVariant wish(QVariant(dark ? 1U : 0U));
        // The call answers with a variant in a variant.
        return bus.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(wish)))));
    }

  private:
    bool dark;
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Portal portal(argc == 1);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject("/org/freedesktop/portal/desktop", &portal);
    if (!bus.registerService("org.freedesktop.portal.Desktop")) return 1;
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
