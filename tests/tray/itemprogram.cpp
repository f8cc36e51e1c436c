// usage: item_program FOLDER TEMPLATE
// Registers a status notifier item with that template, whatever other tray there is,
// when there is a watcher for those.

#include "platform/qt/pictures/SymbolicIcons.h"
#include "platform/qt/tray/StatusNotifierItem.h"
#include "testing/KeptLog.h"

#include <QApplication>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>

using platform::qt::StatusNotifierItem;

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const QApplication application(argc, argv);
    testing_support::KeptLog log;
    const platform::qt::Pictures images({argv[1]}, log);
    const platform::qt::SymbolicIcons icons(images, "org.example.itemtest");
    std::unique_ptr<StatusNotifierItem> item;
    const QList<QImage> pictures{images.tinted(argv[2], 22, Qt::red)};
    const auto show = [&] {
        item = std::make_unique<StatusNotifierItem>(
            StatusNotifierItem::Identity{"org.example.itemtest", "Item test", icons.folder()},
            StatusNotifierItem::Face{icons.nameOf(argv[2]), pictures}, [](int, auto) {});
    };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QDBusServiceWatcher host(StatusNotifierItem::watcherName, bus,
                                   QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&host, &QDBusServiceWatcher::serviceRegistered, show);
    if (bus.interface()->isServiceRegistered(StatusNotifierItem::watcherName)) show();
    return QApplication::exec();
}
