#include "HidingProxy.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace desktop {

namespace {

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw std::runtime_error("a long path: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

std::string socketOf(const std::string& display) {
    return "/tmp/.X11-unix/X" + display.substr(1);
}

support::Descriptor newSocket() {
    return support::Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

} // namespace

HidingProxy::HidingProxy(const std::string& behind, std::string extension)
    : serverSocket(socketOf(behind)),
      hidden(std::move(extension)),
      listener(newSocket()),
      stop(support::makePipe()) {
    bindFree();
    if (::listen(listener.get(), 16) != 0) throw std::runtime_error(std::strerror(errno));
    thread = std::thread([this] { run(); });
}

// A number is taken by the one who makes its socket.
void HidingProxy::bindFree() {
    constexpr int first = 10000, last = 10100;
    for (int number = first; number < last; ++number) {
        ownDisplay = ":" + std::to_string(number);
        ownSocket = socketOf(ownDisplay);
        const sockaddr_un address = addressOf(ownSocket);
        if (::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
            0)
            return;
    }
    throw std::runtime_error("no free display: " + std::string(std::strerror(errno)));
}

HidingProxy::~HidingProxy() {
    stop.writeEnd.reset();
    thread.join();
    ::unlink(ownSocket.c_str());
}

void HidingProxy::run() {
    std::vector<Client> clients;
    for (;;) {
        std::vector<pollfd> waits{{stop.readEnd.get(), POLLIN, 0}, {listener.get(), POLLIN, 0}};
        for (const auto& [client, server] : clients) {
            waits.push_back({client.get(), POLLIN, 0});
            waits.push_back({server.get(), POLLIN, 0});
        }
        ::poll(waits.data(), waits.size(), -1);
        if (waits[0].revents != 0) return;
        for (std::size_t i = clients.size(); i-- > 0;) {
            const auto& [client, server] = clients[i];
            const bool asks = waits[2 + 2 * i].revents != 0;
            const bool answers = waits[3 + 2 * i].revents != 0;
            if ((asks && !pass(client, server, true)) || (answers && !pass(server, client, false)))
                clients.erase(clients.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (waits[1].revents != 0) clients.push_back(meet());
    }
}

HidingProxy::Client HidingProxy::meet() const {
    Client met{support::Descriptor(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC)),
               newSocket()};
    const sockaddr_un address = addressOf(serverSocket);
    (void)::connect(met.server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return met;
}

/// A client asks for the extension by its name, which is then the name of none. It does so in one
/// of the first few small messages, which arrive whole.
bool HidingProxy::pass(const support::Descriptor& from, const support::Descriptor& to,
                       bool hides) const {
    std::array<char, 65536> room{};
    const ssize_t size = ::read(from.get(), room.data(), room.size());
    if (size <= 0) return false;
    std::string message(room.data(), static_cast<std::size_t>(size));
    if (hides)
        for (auto at = message.find(hidden); at != std::string::npos; at = message.find(hidden, at))
            message[at] = '?';
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t now =
            ::send(to.get(), message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (now <= 0) return false;
        sent += static_cast<std::size_t>(now);
    }
    return true;
}

} // namespace desktop
