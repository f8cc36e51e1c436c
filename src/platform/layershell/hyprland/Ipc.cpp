#include "platform/layershell/hyprland/Ipc.h"

#include "platform/session/UnixSocket.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace platform::layershell::hyprland {

namespace {

/// What is there now; false at its end, or where it has come to be too long.
bool readInto(std::string& text, int socket) {
    std::array<char, 1 << 14> part{};
    while (text.size() <= Ipc::longest) {
        const ssize_t got = ::recv(socket, part.data(), part.size(), 0);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && errno == EAGAIN) return true;
        if (got <= 0) return false;
        text.append(part.data(), static_cast<std::size_t>(got));
    }
    return false;
}

/// A request is short, and goes into an empty connection in one piece.
bool sends(int socket, const std::string& request) {
    return ::send(socket, request.data(), request.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(request.size());
}

} // namespace

std::unique_ptr<Ipc> Ipc::open(std::string folder, Descriptors& descriptors) {
    const int events = session::connectTo(folder + "/.socket2.sock");
    if (events < 0) return nullptr;
    return std::unique_ptr<Ipc>(new Ipc(std::move(folder), events, descriptors));
}

Ipc::Ipc(std::string place, int connected, Descriptors& watcher)
    : folder(std::move(place)), descriptors(watcher), events(connected) {
    descriptors.watchReadable(events, [this] { readEvents(); });
}

Ipc::~Ipc() {
    for (const int socket : {events, asking}) {
        if (socket < 0) continue;
        descriptors.unwatch(socket);
        ::close(socket);
    }
}

void Ipc::ask(std::string request, Answered answered) {
    questions.push_back({std::move(request), std::move(answered)});
    if (questions.size() == 1) askNext();
}

void Ipc::askNext() {
    while (!questions.empty()) {
        asking = session::connectTo(requests());
        if (asking >= 0 && sends(asking, questions.front().request)) {
            descriptors.watchReadable(asking, [this] { readAnswer(); });
            return;
        }
        finish(std::nullopt);
    }
}

void Ipc::readAnswer() {
    if (readInto(answer, asking)) return;
    descriptors.unwatch(asking);
    const bool isWhole = !answer.empty() && answer.size() <= longest;
    finish(isWhole ? std::optional(std::move(answer)) : std::nullopt);
    askNext();
}

// The handler may ask again.
void Ipc::finish(std::optional<std::string> whole) {
    if (asking >= 0) ::close(std::exchange(asking, -1));
    answer.clear();
    const Answered answered = std::move(questions.front().answered);
    questions.front().answered = {};
    if (answered) answered(whole);
    questions.pop_front();
}

void Ipc::readEvents() {
    const bool goesOn = readInto(told, events);
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = told.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
        const std::string_view line = std::string_view(told).substr(begin, end - begin);
        const std::size_t mark = line.find(">>");
        if (eventHandler && mark != std::string_view::npos)
            eventHandler(line.substr(0, mark), line.substr(mark + 2));
    }
    told.erase(0, begin);
    if (!goesOn) descriptors.unwatch(events);
}

void Ipc::askLast(const std::string& request) const {
    constexpr int patience = 100; // milliseconds
    const int socket = session::connectTo(requests());
    if (socket < 0) return;
    pollfd answered{.fd = socket, .events = POLLIN, .revents = 0};
    if (sends(socket, request)) ::poll(&answered, 1, patience);
    ::close(socket);
}

} // namespace platform::layershell::hyprland
