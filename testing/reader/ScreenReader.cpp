#include "testing/reader/ScreenReader.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <stdexcept>
#include <utility>

namespace support {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* valued = "org.a11y.atspi.Value";
constexpr const char* acting = "org.a11y.atspi.Action";
constexpr const char* changes = "org.a11y.atspi.Event.Object";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
const QString registry = QStringLiteral("org.a11y.atspi.Registry");
const QString root = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString nothing = QStringLiteral("/org/a11y/atspi/null");

// Of the protocol's states, by their numbers; not those that older toolkits never tell.
constexpr std::pair<unsigned, const char*> spoken[] = {
    {1, "active"},   {4, "checked"}, {5, "collapsed"}, {10, "expanded"},
    {12, "focused"}, {16, "modal"},  {20, "pressed"},  {39, "default"}};
constexpr unsigned sensitive = 24, showing = 25;

QDBusMessage answer(const QDBusConnection& on, const QDBusMessage& question) {
    return on.call(question, QDBus::Block, static_cast<int>(generous.count()));
}

/// Switches the session's accessibility on; where its bus is.
QString busOf(const PrivateDesktop& desktop) {
    const auto& variables = desktop.environment();
    const auto session = QDBusConnection::connectToBus(
        QString::fromStdString(variables.at("DBUS_SESSION_BUS_ADDRESS")), "reader-session");
    const auto to = [](const char* interface, const char* operation) {
        return QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", interface,
                                              operation);
    };
    auto enable = to(properties, "Set");
    enable << "org.a11y.Status"
           << "IsEnabled" << QVariant::fromValue(QDBusVariant(QVariant(true)));
    const QDBusMessage enabled = answer(session, enable);
    const QDBusMessage address = answer(session, to("org.a11y.Bus", "GetAddress"));
    QDBusConnection::disconnectFromBus("reader-session");
    if (enabled.type() != QDBusMessage::ReplyMessage || address.arguments().isEmpty())
        throw std::runtime_error("no accessibility bus: " + enabled.errorMessage().toStdString() +
                                 address.errorMessage().toStdString());
    return address.arguments().first().toString();
}

std::unique_ptr<QCoreApplication> anApplication() {
    static int count = 1;
    static char name[] = "reader";
    static char* arguments[] = {name, nullptr};
    if (QCoreApplication::instance() != nullptr) return nullptr;
    return std::make_unique<QCoreApplication>(count, arguments);
}

std::string shortly(double number) {
    return QString::number(number).toStdString();
}

} // namespace

std::string Heard::line() const {
    std::string text = role;
    if (!name.empty()) text += " \"" + name + "\"";
    if (!description.empty()) text += " (" + description + ")";
    if (value)
        text += " " + shortly(value->current) + " of " + shortly(value->least) + " to " +
                shortly(value->most);
    if (!keys.empty()) text += " by " + keys;
    std::string all;
    for (const std::string& state : states)
        all += (all.empty() ? "" : ", ") + state;
    return all.empty() ? text : text + " [" + all + "]";
}

ScreenReader::ScreenReader(const PrivateDesktop& desktop)
    : application(anApplication()), bus(QDBusConnection::connectToBus(busOf(desktop), "reader")) {
    if (!bus.isConnected()) throw std::runtime_error("the accessibility bus cannot be reached");
    bus.connect({}, {}, changes, "StateChanged", this, SLOT(stateChanged(QDBusMessage)));
    bus.connect({}, {}, changes, "PropertyChange", this, SLOT(propertyChanged(QDBusMessage)));
    for (const char* event : {"object:state-changed", "object:property-change"}) {
        auto call = QDBusMessage::createMethodCall(registry, "/org/a11y/atspi/registry",
                                                   "org.a11y.atspi.Registry", "RegisterEvent");
        call << event << QStringList() << QString();
        if (const auto reply = answer(bus, call); reply.type() != QDBusMessage::ReplyMessage)
            throw std::runtime_error("no events: " + reply.errorMessage().toStdString());
    }
}

ScreenReader::~ScreenReader() {
    QDBusConnection::disconnectFromBus("reader");
}

QDBusMessage ScreenReader::ask(const Place& at, const char* interface, const char* operation,
                               const QVariantList& arguments) const {
    auto call = QDBusMessage::createMethodCall(at.program, at.path, interface, operation);
    call.setArguments(arguments);
    return answer(bus, call);
}

QVariant ScreenReader::property(const Place& at, const char* interface, const char* name) const {
    const auto reply = ask(at, properties, "Get", {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

std::vector<ScreenReader::Place> ScreenReader::children(const Place& of) const {
    const auto reply = ask(of, accessible, "GetChildren");
    std::vector<Place> found;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return found;
    const auto list = reply.arguments().first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath path;
        list.beginStructure();
        list >> program >> path;
        list.endStructure();
        if (path.path() != nothing) found.push_back({program, path.path()});
    }
    list.endArray();
    return found;
}

/// Nothing where it is gone, or not shown.
std::optional<Heard> ScreenReader::look(const Place& at) const {
    const auto states = ask(at, accessible, "GetState");
    if (states.type() != QDBusMessage::ReplyMessage || states.arguments().isEmpty())
        return std::nullopt;
    QList<uint> words;
    states.arguments().first().value<QDBusArgument>() >> words;
    const auto has = [&](unsigned state) {
        const auto word = static_cast<qsizetype>(state / 32);
        return word < words.size() && (words[word] >> (state % 32) & 1u) != 0;
    };
    if (!has(showing)) return std::nullopt;
    Heard heard;
    heard.role = ask(at, accessible, "GetRoleName").arguments().value(0).toString().toStdString();
    heard.name = property(at, accessible, "Name").toString().toStdString();
    heard.description = property(at, accessible, "Description").toString().toStdString();
    for (const auto& [number, name] : spoken)
        if (has(number)) heard.states.insert(name);
    if (!has(sensitive)) heard.states.insert("greyed");
    constexpr uint ofTheScreen = 0;
    const auto extents = ask(at, "org.a11y.atspi.Component", "GetExtents", {ofTheScreen});
    if (!extents.arguments().isEmpty()) {
        const auto area = extents.arguments().first().value<QDBusArgument>();
        area.beginStructure();
        area >> heard.place.x >> heard.place.y >> heard.place.width >> heard.place.height;
        area.endStructure();
    }
    const auto offers = ask(at, accessible, "GetInterfaces").arguments().value(0).toStringList();
    if (offers.contains(valued))
        heard.value = {property(at, valued, "CurrentValue").toDouble(),
                       property(at, valued, "MinimumValue").toDouble(),
                       property(at, valued, "MaximumValue").toDouble()};
    // Of its first action, which not everything has that offers some.
    if (const auto keys = ask(at, acting, "GetKeyBinding", {0});
        offers.contains(acting) && keys.type() == QDBusMessage::ReplyMessage)
        heard.keys = keys.arguments().value(0).toString().toStdString();
    return heard;
}

void ScreenReader::gather(const Place& at, int depth, std::vector<Heard>& into) const {
    auto heard = look(at);
    if (!heard) return;
    heard->depth = depth;
    into.push_back(std::move(*heard));
    for (const Place& child : children(at))
        gather(child, depth + 1, into);
}

std::vector<Heard> ScreenReader::windows() const {
    std::vector<Heard> found;
    for (const Place& program : children({registry, root}))
        for (const Place& window : children(program))
            gather(window, 0, found);
    return found;
}

std::vector<Heard> ScreenReader::aroundFocus() const {
    std::vector<Heard> found;
    if (!last) return found;
    const auto reference = property(*last, accessible, "Parent").value<QDBusArgument>();
    QString program;
    QDBusObjectPath path;
    reference.beginStructure();
    reference >> program >> path;
    reference.endStructure();
    gather({program, path.path()}, 0, found);
    return found;
}

std::optional<Heard> ScreenReader::focus() const {
    return last ? look(*last) : std::nullopt;
}

std::vector<std::string> ScreenReader::takeTold() {
    return std::exchange(told, {});
}

bool ScreenReader::waitUntil(const std::function<bool()>& expected, milliseconds limit) {
    return support::waitUntil(expected, limit, [](Clock::time_point deadline) {
        QCoreApplication::processEvents();
        glance(deadline);
    });
}

bool ScreenReader::reads(const std::string& line) {
    return waitUntil([&] {
        const auto now = focus();
        return now && now->line() == line;
    });
}

void ScreenReader::stateChanged(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.value(0).toString() == "checked") return propertyChanged(message);
    if (arguments.value(0).toString() != "focused" || arguments.value(1).toInt() != 1) return;
    last = Place{message.service(), message.path()};
    if (const auto now = focus()) told.push_back(now->line());
}

void ScreenReader::propertyChanged(const QDBusMessage& message) {
    if (!last || *last != Place{message.service(), message.path()}) return;
    if (const auto now = focus(); now && (told.empty() || told.back() != now->line()))
        told.push_back(now->line());
}

} // namespace support
