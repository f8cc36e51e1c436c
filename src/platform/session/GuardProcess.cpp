#include "platform/session/GuardProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

// glibc 2.36 declares these without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

extern char** environ;

namespace platform::session {

namespace {

using namespace std::chrono_literals;

// One that answers does so in a fraction of a millisecond, and one that is started in ten.
constexpr auto timeToAnswer = 200ms;
constexpr auto timeToStart = 800ms;
constexpr auto timeToEnd = 500ms;
constexpr auto timeToRest = 30s;

bool isReadable(int descriptor, std::chrono::steady_clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd polled{descriptor, POLLIN, 0};
        const int ready = ::poll(&polled, 1, std::max<int>(0, static_cast<int>(left.count())));
        if (ready >= 0 || errno != EINTR) return ready > 0;
    }
}

} // namespace

GuardProcess::GuardProcess(std::string helper, Words given, Log& writer)
    : executable(std::move(helper)), words(std::move(given)), log(writer) {}

GuardProcess::~GuardProcess() {
    letGo(false);
}

bool GuardProcess::answers(const std::vector<std::string>& arguments) {
    if (child > 0 && echoes(Clock::now() + timeToAnswer)) return true;
    kill();
    if (Clock::now() < nextStart) return false;
    start(arguments);
    if (child == 0) return false;
    if (echoes(Clock::now() + timeToStart)) return true;
    tell("does not answer");
    if (!hasEnded()) nextStart = Clock::now() + timeToRest;
    kill();
    return false;
}

// A session of its own, and requests to end blocked before it can ignore them, so that what ends
// the program's process group does not end the helper. A socket instead of a pipe, because writing
// to it when the helper has gone need not raise SIGPIPE. It may outlive the program, so it does
// not keep open where that wrote to.
void GuardProcess::start(const std::vector<std::string>& arguments) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        tell(std::string("has no socket: ") + std::strerror(errno));
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    sigset_t requests;
    sigemptyset(&requests);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&requests, signal);
    posix_spawnattr_setsigmask(&attributes, &requests);
    std::vector<std::string> command{executable};
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::vector<char*> list;
    for (std::string& word : command)
        list.push_back(word.data());
    list.push_back(nullptr);
    const int error =
        posix_spawn(&child, executable.c_str(), &actions, &attributes, list.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    socket = ends[0];
    if (error == 0) return;
    child = 0;
    closeSocket();
    tell("'" + executable + "' cannot be started: " + std::strerror(error));
}

bool GuardProcess::echoes(Clock::time_point deadline) {
    char byte = 0;
    return ::send(socket, &byte, 1, MSG_NOSIGNAL | MSG_DONTWAIT) == 1 &&
           isReadable(socket, deadline) && ::recv(socket, &byte, 1, MSG_DONTWAIT) == 1;
}

bool GuardProcess::hasEnded() const {
    char byte = 0;
    return child > 0 && ::recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

/// Reaps it.
bool GuardProcess::endsBy(Clock::time_point deadline) {
    const int handle = pidfd_open(child, 0);
    if (handle >= 0) {
        (void)isReadable(handle, deadline);
        close(handle);
    }
    if (waitpid(child, nullptr, WNOHANG) == 0) return false;
    child = 0;
    return true;
}

// A stopped process heeds this too.
void GuardProcess::kill() {
    closeSocket();
    if (child == 0) return;
    ::kill(child, SIGKILL);
    endsBy(Clock::now() + timeToEnd);
    child = 0;
}

void GuardProcess::letGo(bool isNeeded) {
    closeSocket();
    if (child > 0 && !isNeeded && !endsBy(Clock::now() + timeToEnd)) kill();
    child = 0;
}

void GuardProcess::closeSocket() {
    if (socket >= 0) close(std::exchange(socket, -1));
}

void GuardProcess::tell(const std::string& failure) {
    if (std::exchange(told, true)) return;
    log.write(words.name + " " + failure + "; " + words.consequence);
}

} // namespace platform::session
