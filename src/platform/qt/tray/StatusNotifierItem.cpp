#include "platform/qt/tray/StatusNotifierItem.h"

#include "platform/qt/tray/ExportedMenu.h"
#include "platform/qt/tray/ItemHosts.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QtEndian>

namespace platform::qt {

namespace {

constexpr const char* interfaceName = "org.kde.StatusNotifierItem";
constexpr const char* propertiesName = "org.freedesktop.DBus.Properties";
constexpr const char* objectPath = "/StatusNotifierItem";

/// (iiay), and (sa(iiay)ss): as the protocol has them.
struct Pixmap {
    int width = 0, height = 0;
    QByteArray bytes;
};
using Pixmaps = QList<Pixmap>;
struct ToolTip {
    QString iconName;
    Pixmaps icon;
    QString title, text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}
QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& tip) {
    argument.beginStructure();
    argument << tip.iconName << tip.icon << tip.title << tip.text;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip& tip) {
    argument.beginStructure();
    argument >> tip.iconName >> tip.icon >> tip.title >> tip.text;
    argument.endStructure();
    return argument;
}

// ARGB in network order, not premultiplied.
Pixmap toPixmap(const QImage& picture) {
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    Pixmap result{image.width(), image.height(), {}};
    for (int row = 0; row < image.height(); ++row) {
        QByteArray line(image.width() * 4, Qt::Uninitialized);
        qToBigEndian<quint32>(image.constScanLine(row), image.width(), line.data());
        result.bytes += line;
    }
    return result;
}

} // namespace

class StatusNotifierItem::Object final : public QDBusVirtualObject {
  public:
    Object(const Identity& whose, Clicked handler, bool withMenu)
        : identity(whose), clicked(std::move(handler)), hasMenu(withMenu) {}

    QString introspect(const QString&) const override {
        QString text = QString("<interface name=\"%1\">").arg(interfaceName);
        for (const auto& [name, value] : properties({}).asKeyValueRange())
            text += QString("<property name=\"%1\" type=\"%2\" access=\"read\"/>")
                        .arg(name, QDBusMetaType::typeToSignature(value.metaType()));
        const QString method("<method name=\"%1\"><arg type=\"i\" direction=\"in\"/>"
                             "<arg type=\"%2\" direction=\"in\"/></method>");
        for (const char* click : {"Activate", "SecondaryActivate", "ContextMenu"})
            text += method.arg(click, "i");
        return text + method.arg("Scroll", "s") +
               "<signal name=\"NewIcon\"/>"
               "<signal name=\"NewTitle\"/><signal name=\"NewToolTip\"/></interface>";
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() == propertiesName) {
            hosts.tell(bus, message.service(), [this, message, bus](const ItemHost& host) {
                answerProperties(message, bus, host);
            });
            return true;
        }
        // A caller may leave the interface out.
        if (!message.interface().isEmpty() && message.interface() != interfaceName) return false;
        if (message.member() == "Scroll") return bus.send(message.createReply());
        const auto button = buttonOf(message.member());
        if (!button) return false;
        bus.send(message.createReply());
        hosts.tell(bus, message.service(),
                   [this, button, place = placeIn(message)](const ItemHost& host) {
                       click(*button, host.tellsPlaces ? place : std::nullopt);
                   });
        return true;
    }

    void setTitle(const QString& title) { identity.title = title; }

    Face face;

  private:
    static std::optional<int> buttonOf(const QString& member) {
        if (member == "Activate") return 0;
        if (member == "ContextMenu") return 1;
        if (member == "SecondaryActivate") return 2;
        return {};
    }

    // A host that knows no place says zero.
    static std::optional<QPoint> placeIn(const QDBusMessage& message) {
        const QVariantList told = message.arguments();
        if (told.size() != 2) return {};
        const QPoint place(told[0].toInt(), told[1].toInt());
        return place.isNull() ? std::nullopt : std::optional(place);
    }

    // The click may open a menu, whose loop must not run inside the host's call.
    void click(int button, std::optional<QPoint> place) {
        QMetaObject::invokeMethod(
            this, [this, button, place] { clicked(button, place); }, Qt::QueuedConnection);
    }

    void answerProperties(const QDBusMessage& message, const QDBusConnection& bus,
                          const ItemHost& host) const {
        const QVariantMap all = properties(host);
        const QVariantList arguments = message.arguments();
        const auto found =
            arguments.size() == 2 ? all.find(arguments[1].toString()) : all.constEnd();
        if (message.member() == "GetAll")
            bus.send(message.createReply(all));
        else if (message.member() != "Get")
            bus.send(message.createErrorReply(QDBusError::UnknownMethod, "no such method"));
        else if (found == all.end())
            bus.send(message.createErrorReply(QDBusError::UnknownProperty, "no such property"));
        else
            bus.send(message.createReply(QVariant::fromValue(QDBusVariant(*found))));
    }

    // Hosts that see a "Menu" never pass a right click on: those that would, see none.
    QVariantMap properties(const ItemHost& host) const {
        Pixmaps pixmaps;
        for (const QImage& picture : host.hasOwnColours ? face.outlined : face.pictures)
            pixmaps += toPixmap(picture);
        const QString iconName = host.tintsIcons ? face.iconName : QString();
        const QVariant none = QVariant::fromValue(Pixmaps());
        QVariantMap all{{"Category", "ApplicationStatus"},
                        {"Id", identity.id},
                        {"Title", identity.title},
                        {"Status", "Active"},
                        {"WindowId", 0},
                        {"IconName", iconName},
                        {"IconThemePath", identity.themePath},
                        {"IconPixmap", QVariant::fromValue(pixmaps)},
                        {"OverlayIconName", ""},
                        {"OverlayIconPixmap", none},
                        {"AttentionIconName", ""},
                        {"AttentionIconPixmap", none},
                        {"ToolTip", QVariant::fromValue(ToolTip{{}, {}, identity.title, {}})},
                        {"ItemIsMenu", false}};
        if (hasMenu && !host.passesClicks)
            all["Menu"] = QVariant::fromValue(QDBusObjectPath(ExportedMenu::path));
        return all;
    }

    Identity identity;
    Clicked clicked;
    bool hasMenu;
    ItemHosts hosts;
};

StatusNotifierItem::StatusNotifierItem(const Identity& identity, Face face, Clicked clicked,
                                       ExportedMenu* exported)
    : connectionName(identity.id + "-status-item"),
      watcher(identity.watcher),
      bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)),
      object(std::make_unique<Object>(identity, std::move(clicked), exported != nullptr)),
      menu(exported) {
    qDBusRegisterMetaType<Pixmap>();
    qDBusRegisterMetaType<Pixmaps>();
    qDBusRegisterMetaType<ToolTip>();
    object->face = std::move(face);
    const QString service =
        QString("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
    // The object comes first: whoever sees the name may call it.
    bus.registerVirtualObject(objectPath, object.get());
    if (menu != nullptr) menu->offerOn(bus);
    bus.registerService(service);
    auto registration = QDBusMessage::createMethodCall(identity.watcher, "/StatusNotifierWatcher",
                                                       watcherName, "RegisterStatusNotifierItem");
    registration << service;
    bus.send(registration);
}

StatusNotifierItem::~StatusNotifierItem() {
    if (menu != nullptr) menu->withdraw();
    QDBusConnection::disconnectFromBus(connectionName);
}

void StatusNotifierItem::setFace(Face face) {
    object->face = std::move(face);
    bus.send(QDBusMessage::createSignal(objectPath, interfaceName, "NewIcon"));
}

void StatusNotifierItem::showMenuAtHost() const {
    bus.send(QDBusMessage::createMethodCall(watcher, "/StatusNotifierWatcher",
                                            "com.tamberlo.ShellTray1", "ShowMenu"));
}

void StatusNotifierItem::setTitle(const QString& title) {
    object->setTitle(title);
    for (const char* change : {"NewTitle", "NewToolTip"})
        bus.send(QDBusMessage::createSignal(objectPath, interfaceName, change));
}

} // namespace platform::qt

Q_DECLARE_METATYPE(platform::qt::Pixmap)
Q_DECLARE_METATYPE(platform::qt::ToolTip)
