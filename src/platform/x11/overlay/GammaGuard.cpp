#include "platform/x11/overlay/GammaGuard.h"

#include "platform/x11/overlay/gammaguard/Message.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace platform::x11 {

using gammaguard::Header;
using gammaguard::Order;

GammaGuard::GammaGuard(std::string helper, std::string display, Log& writer)
    : executable(std::move(helper)), displayName(std::move(display)), log(writer) {}

GammaGuard::~GammaGuard() {
    if (socket >= 0) close(socket);
    if (child > 0)
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
}

// A session of its own, and requests to end blocked before it can ignore them, so that what ends
// the program's process group does not end the helper. A socket instead of a pipe, because writing
// to it when the helper has gone need not raise SIGPIPE.
void GammaGuard::start() {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        log.write(std::string("the gamma guard has no socket: ") + std::strerror(errno));
        failed = true;
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    sigset_t requests;
    sigemptyset(&requests);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&requests, signal);
    posix_spawnattr_setsigmask(&attributes, &requests);
    char* arguments[] = {executable.data(), displayName.data(), nullptr};
    const int error =
        posix_spawn(&child, executable.c_str(), &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error != 0) {
        child = 0;
        close(ends[0]);
        log.write("the gamma guard '" + executable +
                  "' cannot be started: " + std::strerror(error));
        failed = true;
        return;
    }
    socket = ends[0];
}

bool GammaGuard::send(const void* data, std::size_t bytes) {
    const auto* at = static_cast<const char*>(data);
    while (bytes > 0 && socket >= 0) {
        const ssize_t sent = ::send(socket, at, bytes, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) {
            log.write("the gamma guard has ended early");
            close(socket);
            socket = -1;
            failed = true;
            return false;
        }
        at += sent;
        bytes -= static_cast<std::size_t>(sent);
    }
    return bytes == 0;
}

void GammaGuard::keep(std::uint32_t crtc, const std::vector<std::uint16_t>& ramp) {
    if (socket < 0 && !failed) start();
    const Header header{Order::keep, crtc, static_cast<std::uint32_t>(ramp.size() / 3)};
    if (send(&header, sizeof header)) send(ramp.data(), ramp.size() * sizeof ramp[0]);
}

void GammaGuard::forget(std::uint32_t crtc) {
    const Header header{Order::forget, crtc, 0};
    send(&header, sizeof header);
}

} // namespace platform::x11
