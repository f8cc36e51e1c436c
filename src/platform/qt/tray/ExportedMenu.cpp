#include "platform/qt/tray/ExportedMenu.h"

#include "platform/qt/menu/EntryText.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::qt {

namespace {

constexpr const char* interfaceName = "com.canonical.dbusmenu";
constexpr const char* propertiesName = "org.freedesktop.DBus.Properties";
constexpr uint protocolVersion = 3;

/// (ia{sv}av) and (ia{sv}), as the protocol has them.
struct LayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};
struct PropertiesItem {
    int id = 0;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const LayoutItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties << item.children;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, LayoutItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties >> item.children;
    argument.endStructure();
    return argument;
}
QDBusArgument& operator<<(QDBusArgument& argument, const PropertiesItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, PropertiesItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QVariantMap narrowed(const QVariantMap& all, const QStringList& names) {
    if (names.isEmpty()) return all;
    QVariantMap result;
    for (const QString& name : names)
        if (const auto found = all.find(name); found != all.end()) result.insert(name, *found);
    return result;
}

void mark(QVariantMap& properties, const char* kind, bool on) {
    properties["toggle-type"] = kind;
    properties["toggle-state"] = on ? 1 : 0;
}

QString withoutMnemonic(QString text) {
    return text.replace('_', "__");
}

} // namespace

/// Makes the nodes of one layout, and what each of them does.
class ExportedMenu::Builder {
  public:
    explicit Builder(ExportedMenu& whose) : owner(whose) { owner.actions.clear(); }

    void fill(Node& parent, const Menu& level, const std::vector<std::size_t>& path,
              const QString& key) {
        std::vector<std::size_t> place = path;
        place.push_back(0);
        for (const auto& item : level.items) {
            const MenuEntryId entry = identify(*item, place);
            const QString own = key + '/' + QString::number(place.back()) +
                                QString::fromStdString(entry.title + ' ' + entry.action);
            if (const auto* slider = std::get_if<SliderView>(&item->view))
                addTicks(parent, *slider, entry, own);
            else if (const auto* bounds = std::get_if<BoundsView>(&item->view))
                addBoxes(parent, *bounds, own);
            else
                addItem(parent, *item, entry, place, own);
            ++place.back();
        }
    }

  private:
    Node& add(Node& parent, const QString& key, const QString& label) {
        auto id = owner.ids.find(key);
        if (id == owner.ids.end())
            id = owner.ids.insert(key, static_cast<int>(owner.ids.size()) + 1);
        Node& node = parent.children.emplace_back();
        node.id = *id;
        if (!label.isEmpty()) node.properties["label"] = withoutMnemonic(label);
        return node;
    }

    void addSeparator(Node& parent, const QString& key) {
        add(parent, key, {}).properties["type"] = "separator";
    }

    void addItem(Node& parent, const MenuItem& item, const MenuEntryId& entry,
                 const std::vector<std::size_t>& place, const QString& key) {
        if (item.separator) return addSeparator(parent, key);
        Node& node = addEntry(parent, item, entry, key);
        if (item.submenu == nullptr || item.greyed()) return;
        node.properties["children-display"] = "submenu";
        // A host opens a submenu and sends no click for the entry that has one.
        if (!item.action.empty()) {
            addEntry(node, item, entry, key + "/itself");
            addSeparator(node, key + "/line");
        }
        fill(node, *item.submenu, place, key);
    }

    Node& addEntry(Node& parent, const MenuItem& item, const MenuEntryId& entry,
                   const QString& key) {
        const auto [label, shortcut] = entryText(item);
        Node& node = add(parent, key, shortcut.isEmpty() ? label : label + " (" + shortcut + ')');
        if (item.greyed()) node.properties["enabled"] = false;
        if (item.isToggle || item.state != 0) mark(node.properties, "checkmark", item.state != 0);
        if (!item.action.empty() && !item.greyed())
            owner.actions[node.id] = [this_ = &owner, entry] { this_->handlers.chosen(entry); };
        return node;
    }

    void addTicks(Node& parent, const SliderView& view, const MenuEntryId& entry,
                  const QString& key) {
        const Slider& slider = view.slider;
        const int ticks = std::max(slider.tickMarks, 2);
        const double step = (slider.maximum - slider.minimum) / (ticks - 1);
        const auto current = std::lround((slider.value - slider.minimum) / step);
        for (int tick = 0; tick < ticks; ++tick) {
            // The knob may stand between two ticks; the nearest one stands for its place.
            const double value =
                tick == current ? slider.value : std::round(slider.minimum + tick * step);
            const QString text = view.text ? QString::fromStdString(view.text(value))
                                           : QString::number(static_cast<int>(value));
            Node& node = add(parent, key + "/tick" + QString::number(tick), text);
            mark(node.properties, "radio", tick == current);
            owner.actions[node.id] = [this_ = &owner, entry, value] {
                this_->handlers.moved(entry, value);
            };
        }
    }

    void addBoxes(Node& parent, const BoundsView& view, const QString& key) {
        int number = 0;
        const auto addBox = [&](const BoundsView::Named& named) {
            Node& node = add(parent, key + "/box" + QString::number(++number),
                             QString::fromStdString(named.text));
            mark(node.properties, "checkmark", named.box->state != 0);
            if (!named.box->enabled) node.properties["enabled"] = false;
            owner.actions[node.id] = [this_ = &owner, box = named.box] {
                if (!box->enabled) return;
                box->state = box->state != 0 ? 0 : 1;
                this_->handlers.clicked(*box);
                this_->changed();
            };
        };
        for (const auto& corner : view.corners)
            addBox(corner);
        for (const auto& side : view.sides)
            addBox(side);
    }

    ExportedMenu& owner;
};

ExportedMenu::ExportedMenu(const Menu& shown, Handlers hears)
    : menu(shown), handlers(std::move(hears)) {
    qDBusRegisterMetaType<LayoutItem>();
    qDBusRegisterMetaType<PropertiesItem>();
    qDBusRegisterMetaType<QList<PropertiesItem>>();
    qDBusRegisterMetaType<QList<int>>();
}

ExportedMenu::~ExportedMenu() = default;

void ExportedMenu::offerOn(const QDBusConnection& connection) {
    offeredOn = connection;
    offeredOn->registerVirtualObject(path, this);
}

void ExportedMenu::withdraw() {
    if (offeredOn) offeredOn->unregisterObject(path);
    offeredOn.reset();
    asked = false;
}

// Most changes come in a row, and most desktops ask for no menu at all.
void ExportedMenu::changed() {
    if (std::exchange(due, true) || !asked) return;
    QMetaObject::invokeMethod(this, &ExportedMenu::update, Qt::QueuedConnection);
}

void ExportedMenu::update() {
    if (!std::exchange(due, false)) return;
    const Node before = std::exchange(root, {});
    root.properties["children-display"] = "submenu";
    Builder(*this).fill(root, menu, {}, {});
    if (!asked || !offeredOn || root == before) return;
    auto signal = QDBusMessage::createSignal(path, interfaceName, "LayoutUpdated");
    signal << ++revision << 0;
    offeredOn->send(signal);
}

const ExportedMenu::Node* ExportedMenu::find(const Node& from, int id) const {
    if (from.id == id) return &from;
    for (const Node& child : from.children)
        if (const Node* found = find(child, id)) return found;
    return nullptr;
}

QVariant ExportedMenu::layout(const Node& node, int depth, const QStringList& names) const {
    LayoutItem item{node.id, narrowed(node.properties, names), {}};
    if (depth != 0)
        for (const Node& child : node.children)
            item.children += QDBusVariant(layout(child, depth - 1, names));
    return QVariant::fromValue(item);
}

QVariant ExportedMenu::propertiesOf(const QList<int>& wanted, const QStringList& names) const {
    QList<PropertiesItem> items;
    for (const int id : wanted)
        if (const Node* node = find(root, id))
            items += PropertiesItem{id, narrowed(node->properties, names)};
    return QVariant::fromValue(items);
}

void ExportedMenu::event(int id, const QString& what) {
    const auto action = actions.constFind(id);
    if (what != "clicked" || action == actions.constEnd()) return;
    // It may open an alert, whose loop must not run inside this call.
    QMetaObject::invokeMethod(this, *action, Qt::QueuedConnection);
}

QVariantList ExportedMenu::answer(const QString& member, const QVariantList& arguments) {
    if (member == "GetLayout" && arguments.size() == 3) {
        const Node* const node = find(root, arguments[0].toInt());
        return {revision,
                layout(node ? *node : root, arguments[1].toInt(), arguments[2].toStringList())};
    }
    if (member == "GetGroupProperties" && arguments.size() == 2)
        return {propertiesOf(qdbus_cast<QList<int>>(arguments[0]), arguments[1].toStringList())};
    if (member == "AboutToShow") return {false};
    if (member == "AboutToShowGroup")
        return {QVariant::fromValue(QList<int>()), QVariant::fromValue(QList<int>())};
    if (member == "EventGroup" && arguments.size() == 1) {
        const auto events = arguments[0].value<QDBusArgument>();
        events.beginArray();
        while (!events.atEnd()) {
            int id = 0;
            QString what;
            QDBusVariant data;
            uint time = 0;
            events.beginStructure();
            events >> id >> what >> data >> time;
            events.endStructure();
            event(id, what);
        }
        events.endArray();
        return {QVariant::fromValue(QList<int>())};
    }
    return {};
}

bool ExportedMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& bus) {
    const QString member = message.member();
    const QVariantList arguments = message.arguments();
    if (message.interface() == propertiesName) {
        const QVariantMap all{{"Version", protocolVersion},
                              {"TextDirection", QGuiApplication::isRightToLeft() ? "rtl" : "ltr"},
                              {"Status", "normal"},
                              {"IconThemePath", QStringList()}};
        if (member == "GetAll") return bus.send(message.createReply(all));
        if (member != "Get" || arguments.size() != 2) return false;
        const auto found = all.find(arguments[1].toString());
        if (found == all.end()) return false;
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(*found))));
    }
    if (!message.interface().isEmpty() && message.interface() != interfaceName) return false;
    update();
    asked = true;
    if (member == "Event" && arguments.size() == 4) {
        event(arguments[0].toInt(), arguments[1].toString());
        return bus.send(message.createReply());
    }
    if (member == "GetProperty" && arguments.size() == 2) {
        const Node* const node = find(root, arguments[0].toInt());
        const QVariant value = node ? node->properties.value(arguments[1].toString()) : QVariant();
        if (!value.isValid()) return false;
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
    }
    const QVariantList results = answer(member, arguments);
    return !results.isEmpty() && bus.send(message.createReply(results));
}

QString ExportedMenu::introspect(const QString&) const {
    return R"xml(<interface name="com.canonical.dbusmenu">
<property name="Version" type="u" access="read"/>
<property name="TextDirection" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="IconThemePath" type="as" access="read"/>
<method name="GetLayout"><arg type="i" direction="in"/><arg type="i" direction="in"/>
<arg type="as" direction="in"/><arg type="u" direction="out"/>
<arg type="(ia{sv}av)" direction="out"/></method>
<method name="GetGroupProperties"><arg type="ai" direction="in"/><arg type="as" direction="in"/>
<arg type="a(ia{sv})" direction="out"/></method>
<method name="GetProperty"><arg type="i" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method>
<method name="Event"><arg type="i" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="in"/><arg type="u" direction="in"/></method>
<method name="EventGroup"><arg type="a(isvu)" direction="in"/>
<arg type="ai" direction="out"/></method>
<method name="AboutToShow"><arg type="i" direction="in"/><arg type="b" direction="out"/></method>
<method name="AboutToShowGroup"><arg type="ai" direction="in"/><arg type="ai" direction="out"/>
<arg type="ai" direction="out"/></method>
<signal name="ItemsPropertiesUpdated"><arg type="a(ia{sv})"/><arg type="a(ias)"/></signal>
<signal name="LayoutUpdated"><arg type="u"/><arg type="i"/></signal>
<signal name="ItemActivationRequested"><arg type="i"/><arg type="u"/></signal>
</interface>)xml";
}

} // namespace platform::qt

Q_DECLARE_METATYPE(platform::qt::LayoutItem)
Q_DECLARE_METATYPE(platform::qt::PropertiesItem)
