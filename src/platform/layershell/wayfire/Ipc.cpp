#include "platform/layershell/wayfire/Ipc.h"

#include "platform/json/Parser.h"
#include "platform/session/UnixSocket.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace platform::layershell::wayfire {

std::unique_ptr<Ipc> Ipc::open(const std::string& path, Descriptors& descriptors) {
    const int made = session::connectTo(path);
    return made < 0 ? nullptr : std::unique_ptr<Ipc>(new Ipc(made, descriptors));
}

Ipc::Ipc(int connected, Descriptors& watcher) : socket(connected), descriptors(watcher) {
    descriptors.watchReadable(socket, [this] {
        transfer();
        while (handleNext()) {
        }
        if (broken) descriptors.unwatch(socket);
    });
}

Ipc::~Ipc() {
    descriptors.unwatch(socket);
    ::close(socket);
}

void Ipc::ask(std::string_view method, std::string_view data, Handler answered) {
    const std::string text =
        R"({"method":")" + std::string(method) + R"(","data":)" + std::string(data) + "}";
    const auto length = static_cast<std::uint32_t>(text.size());
    out.append(reinterpret_cast<const char*>(&length), sizeof length);
    out += text;
    unanswered.push_back(std::move(answered));
    transfer();
}

// What does not go now goes with the next question, or after the next answer.
void Ipc::transfer() {
    while (!broken && !out.empty()) {
        const ssize_t sent = ::send(socket, out.data(), out.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0 && errno != EAGAIN) broken = true;
        if (sent <= 0) break;
        out.erase(0, static_cast<std::size_t>(sent));
    }
    std::array<char, 1 << 14> part{};
    while (!broken && in.size() <= longest) {
        const ssize_t got = ::recv(socket, part.data(), part.size(), 0);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && errno == EAGAIN) return;
        if (got <= 0)
            broken = true;
        else
            in.append(part.data(), static_cast<std::size_t>(got));
    }
}

bool Ipc::handleNext() {
    std::uint32_t length = 0;
    if (in.size() < sizeof length) return false;
    std::memcpy(&length, in.data(), sizeof length);
    if (length <= longest && in.size() < sizeof length + length) return false;
    auto value = length > longest
                     ? std::nullopt
                     : json::Parser().parse(std::string_view(in).substr(sizeof length, length));
    if (!value) {
        broken = true;
        in.clear();
        return false;
    }
    in.erase(0, sizeof length + length);
    if (value->member("event")) {
        if (eventHandler) eventHandler(*value);
    } else if (!unanswered.empty()) {
        const Handler answered = std::move(unanswered.front());
        unanswered.pop_front();
        if (answered) answered(*value);
    }
    return true;
}

} // namespace platform::layershell::wayfire
