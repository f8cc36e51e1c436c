#pragma once

#include <QDBusConnection>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

namespace platform::qt {

class ExportedMenu;

/// An org.kde.StatusNotifierItem. Hosts that pass every click on are shown no menu; the others show
/// the exported one. It is registered with the watcher while it lives, over a bus connection of its
/// own: hosts that know an item by its connection let it go with the object. Main thread.
class StatusNotifierItem {
  public:
    /// The name of watchers for all programs, and the interface of every one.
    static constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";

    /// What hosts show: the icon of that name where they tint it, else a picture.
    struct Face {
        QString iconName;
        QList<QImage> pictures{}; ///< of several sizes
        QList<QImage> outlined{}; ///< the same, for a ground of any colour
    };
    struct Identity {
        QString id;                    ///< the same in every run
        QString title;                 ///< also the tool tip
        QString themePath;             ///< the folder of the named icons
        QString watcher = watcherName; ///< the name of the watcher that it is registered with
    };
    /// 0 left, 1 right, 2 middle, and where the host says that the item is, in device pixels from
    /// the top left corner of all monitors. Called from the run loop, not from inside the host's
    /// call.
    using Clicked = std::function<void(int button, std::optional<QPoint> place)>;

    /// Without a menu all hosts are taken for such that pass clicks on. The menu must outlive it.
    StatusNotifierItem(const Identity& identity, Face face, Clicked clicked,
                       ExportedMenu* menu = nullptr);
    ~StatusNotifierItem();
    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

    void setFace(Face face);
    void setTitle(const QString& title);
    /// Has the host open the exported menu: one that knows the shell's own interface for that.
    void showMenuAtHost() const;

  private:
    class Object;

    QString connectionName, watcher;
    QDBusConnection bus;
    std::unique_ptr<Object> object;
    ExportedMenu* menu;
};

} // namespace platform::qt
