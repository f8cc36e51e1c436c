#pragma once

#include "platform/Menu.h"
#include "platform/qt/menu/MenuEntryId.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <QVariantMap>
#include <functional>
#include <optional>
#include <vector>

namespace platform::qt {

/// The menu as com.canonical.dbusmenu, for hosts of status notifier items that show an item's menu
/// themselves and ask for no click. A slider is a menu of its ticks, a bounds view one of its
/// boxes, and an entry with an action and a submenu is in its submenu once more. Main thread.
class ExportedMenu final : public QDBusVirtualObject {
  public:
    /// Hears from the run loop, not from inside the host's call.
    struct Handlers {
        std::function<void(const MenuEntryId& entry)> chosen;
        std::function<void(const MenuEntryId& entry, double value)> moved;
        std::function<void(CheckBox& box)> clicked;
    };

    /// `menu` is what the hosts see; both are lent and must outlive the last call.
    ExportedMenu(const Menu& menu, Handlers handlers);
    ~ExportedMenu() override;

    static constexpr const char* path = "/Menu";

    /// The connection that it is offered on from now on.
    void offerOn(const QDBusConnection& connection);
    /// To be called before that is closed, which it cannot be while it is in use.
    void withdraw();

    /// The menu says something else. Hosts that have asked for it are told, from the run loop.
    void changed();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

  private:
    struct Node {
        int id = 0;
        QVariantMap properties;
        std::vector<Node> children;
        bool operator==(const Node&) const = default;
    };
    class Builder;

    void update();
    const Node* find(const Node& from, int id) const;
    QVariant layout(const Node& node, int depth, const QStringList& names) const;
    QVariantList answer(const QString& member, const QVariantList& arguments);
    QVariant propertiesOf(const QList<int>& ids, const QStringList& names) const;
    void event(int id, const QString& what);

    const Menu& menu;
    Handlers handlers;
    std::optional<QDBusConnection> offeredOn;
    Node root;
    uint revision = 1;
    bool asked = false, due = true;
    QHash<QString, int> ids; ///< by what tells the entries apart, the same for every layout
    QHash<int, std::function<void()>> actions;
};

} // namespace platform::qt
