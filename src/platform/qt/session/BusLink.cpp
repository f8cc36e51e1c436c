#include "platform/qt/session/BusLink.h"

#include <QByteArray>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace platform::qt {

namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* nowhere = "disabled:"; // no kind of address that any library knows
constexpr int startMilliseconds = 2000;
constexpr int searchMilliseconds = 10; // the main loop waits for that
constexpr std::chrono::seconds searchPeriod{2};

enum class Bus { answers, isSilent, isAbsent };

std::string addressOfSessionBus() {
    const char* const told = std::getenv(variable);
    if (told != nullptr && *told != '\0') return told;
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    const std::string usual = folder == nullptr ? "" : std::string(folder) + "/bus";
    return folder != nullptr && ::access(usual.c_str(), F_OK) == 0 ? "unix:path=" + usual : "";
}

/// Of an address such as "unix:path=/run/bus,guid=01;...", without the escapes; empty where it has
/// none.
std::string valueIn(std::string_view address, std::string_view key) {
    const auto at = address.find(key);
    if (at == address.npos) return {};
    address.remove_prefix(at + key.size());
    const std::string escaped(address.substr(0, address.find_first_of(",;")));
    return QByteArray::fromPercentEncoding(QByteArray::fromStdString(escaped)).toStdString();
}

/// Nothing for an address that is no socket of this machine.
std::optional<std::pair<sockaddr_un, socklen_t>> socketAt(const std::string& address) {
    if (!address.starts_with("unix:")) return std::nullopt;
    std::string path = valueIn(address, "path=");
    if (path.empty()) path = '\0' + valueIn(address, "abstract=");
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    if (path.size() < 2 || path.size() >= sizeof place.sun_path) return std::nullopt;
    std::memcpy(place.sun_path, path.data(), path.size());
    const auto length = offsetof(sockaddr_un, sun_path) + path.size() + (path[0] == '\0' ? 0 : 1);
    return std::pair{place, static_cast<socklen_t>(length)};
}

/// Begins what every client begins with, and waits for any answer. It takes no library, since that
/// would wait for as long as it likes.
Bus lookAt(const std::string& address, int milliseconds) {
    const auto place = socketAt(address);
    if (!place) return Bus::answers; // it cannot be told
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) return Bus::isAbsent;
    char uid[16];
    (void)std::snprintf(uid, sizeof uid, "%u", static_cast<unsigned>(::geteuid()));
    const QByteArray greeting =
        QByteArray("\0AUTH EXTERNAL ", 15) + QByteArray(uid).toHex() + "\r\n";
    const auto length = static_cast<std::size_t>(greeting.size());
    Bus found = Bus::isAbsent;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&place->first), place->second) == 0) {
        pollfd answer{fd, POLLIN, 0};
        const bool said = ::send(fd, greeting.data(), length, MSG_NOSIGNAL) >= 0;
        found = said && ::poll(&answer, 1, milliseconds) == 1 ? Bus::answers : Bus::isSilent;
    } else if (errno == EAGAIN) { // as many as can are waiting there already
        found = Bus::isSilent;
    }
    (void)::close(fd);
    return found;
}

} // namespace

BusLink::BusLink(Log& log) : address(addressOfSessionBus()) {
    connect(&search, &QTimer::timeout, this, [this] { lookForBus(); });
    search.setInterval(searchPeriod);
    isSilent = !address.empty() && lookAt(address, startMilliseconds) == Bus::isSilent;
    if (!isSilent) return;
    log.write("the session bus does not answer; the program goes on without it");
    ::setenv(variable, nowhere, 1);
}

QDBusConnection BusLink::connection() {
    if (isUsed) return current;
    isUsed = true;
    use(QDBusConnection::sessionBus());
    // The library keeps what it has found. What the program starts is to have the real address.
    if (isSilent) ::setenv(variable, address.c_str(), 1);
    return current;
}

void BusLink::use(const QDBusConnection& connection) {
    current = connection;
    if (current.isConnected())
        current.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
                        "Disconnected", this, SLOT(lost()));
    else if (!address.empty())
        search.start();
}

void BusLink::lost() {
    if (!address.empty()) search.start();
}

void BusLink::lookForBus() {
    if (lookAt(address, searchMilliseconds) != Bus::answers) return;
    const QString name = "returned " + QString::number(++returns);
    const auto again = QDBusConnection::connectToBus(QString::fromStdString(address), name);
    if (!again.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return;
    }
    search.stop();
    use(again);
    if (returned) returned();
}

} // namespace platform::qt
