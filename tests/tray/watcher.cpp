// A watcher of status notifier items that no host has registered with. Runs until it is killed.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <cstdio>

namespace {

constexpr const char* name = "org.kde.StatusNotifierWatcher";
constexpr const char* path = "/StatusNotifierWatcher";

class Watcher final : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() == "Get")
            return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(false))));
        if (message.member() != "RegisterStatusNotifierItem") return false;
        std::puts("an item is registered");
        (void)std::fflush(stdout);
        return bus.send(message.createReply());
    }
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Watcher watcher;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject(path, &watcher);
    if (!bus.registerService(name)) return 1;
    std::puts("ready");
    (void)std::fflush(stdout);
    return QCoreApplication::exec();
}
