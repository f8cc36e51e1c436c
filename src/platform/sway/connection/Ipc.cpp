#include "platform/sway/connection/Ipc.h"

#include "platform/session/UnixSocket.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform::sway {

namespace {

bool waitFor(int descriptor, short events, Ipc::Clock::time_point deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Ipc::Clock::now()).count();
        pollfd polled{descriptor, events, 0};
        const int ready = ::poll(&polled, 1, left > 0 ? static_cast<int>(left) : 0);
        if (ready >= 0 || errno != EINTR) return ready > 0;
    }
}

} // namespace

std::unique_ptr<Ipc> Ipc::open(const std::string& path) {
    const int made = session::connectTo(path);
    return made < 0 ? nullptr : std::unique_ptr<Ipc>(new Ipc(made));
}

Ipc::~Ipc() {
    ::close(socket);
}

void Ipc::send(Type type, std::string_view payload) {
    out += headerOf(static_cast<std::uint32_t>(type), payload.size());
    out += payload;
    ++unanswered;
    while (!broken && !out.empty()) {
        const ssize_t sent = ::send(socket, out.data(), out.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0 && errno == EAGAIN) return;
        if (sent < 0) broken = true;
        if (sent > 0) out.erase(0, static_cast<std::size_t>(sent));
    }
}

void Ipc::transfer() {
    std::array<char, 1 << 14> part{};
    while (!broken && !out.empty()) {
        const ssize_t sent = ::send(socket, out.data(), out.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent <= 0) break;
        out.erase(0, static_cast<std::size_t>(sent));
    }
    while (!broken) {
        const ssize_t got = ::recv(socket, part.data(), part.size(), MSG_DONTWAIT);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && errno == EAGAIN) return;
        if (got <= 0)
            broken = true;
        else
            in.add({part.data(), static_cast<std::size_t>(got)});
        if (in.isFull()) return;
    }
}

std::optional<Message> Ipc::next() {
    auto message = in.next();
    if (in.isRefused()) broken = true;
    if (message && !(message->type & eventBit) && unanswered > 0) --unanswered;
    return message;
}

std::optional<JsonValue> Ipc::ask(Type type, std::string_view payload, Clock::time_point deadline) {
    send(type, payload);
    while (!broken) {
        transfer();
        while (auto message = next())
            if (!(message->type & eventBit) && unanswered == 0) return std::move(message->value);
        if (!waitFor(socket, static_cast<short>(out.empty() ? POLLIN : POLLIN | POLLOUT), deadline))
            return std::nullopt;
    }
    return std::nullopt;
}

std::string failureIn(const JsonValue& reply) {
    const auto* list = std::get_if<JsonValue::List>(&reply.held);
    if (!list) return {};
    for (const JsonValue& one : *list) {
        const JsonValue* const success = one.member("success");
        if (!success || success->held != decltype(success->held)(false)) continue;
        const JsonValue* const error = one.member("error");
        const auto* text = error ? std::get_if<std::string>(&error->held) : nullptr;
        return text ? *text : "a command failed";
    }
    return {};
}

std::string inFirstMode(const std::string& commands, const std::string& mode) {
    constexpr const char* first = "default";
    if (mode.empty() || mode == first || commands.find("bindcode ") == std::string::npos)
        return commands;
    const char quote = mode.find('"') == std::string::npos ? '"' : '\'';
    return std::string("mode ") + first + "; " + commands + "; mode " + quote + mode + quote;
}

} // namespace platform::sway
