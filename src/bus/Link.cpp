#include "bus/Link.h"

#include "bus/Address.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace bus {

namespace {

using std::chrono::microseconds;

// A message takes some fifty microseconds, so that a turn is a small part of a frame.
constexpr int messagesInATurn = 4;
constexpr std::uint64_t searchPeriod = 2'000'000; // microseconds
constexpr std::uint64_t longestPatience = 16'000'000;

std::uint64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000 +
           static_cast<std::uint64_t>(time.tv_nsec) / 1'000;
}

int checked(int descriptor) {
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "session bus");
    return descriptor;
}

} // namespace

Link::Link(platform::Descriptors& loop, platform::Log& logger)
    : descriptors(loop),
      log(logger),
      address(addressOfSessionBus()),
      together(checked(::epoll_create1(EPOLL_CLOEXEC))),
      alarm(checked(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))) {
    epoll_event event{.events = EPOLLIN, .data = {.fd = alarm}};
    checked(::epoll_ctl(together, EPOLL_CTL_ADD, alarm, &event));
    connect();
}

Link::~Link() {
    if (isStarted) descriptors.unwatch(together);
    ::close(alarm);
    ::close(together);
}

void Link::add(User& user) {
    users.push_back(&user);
    if (connection) user.attach(*connection);
}

void Link::connect() {
    sd_bus* made = nullptr;
    if (address.empty() || sd_bus_new(&made) < 0) return;
    connection.reset(made);
    // Trusted: the library would ask who calls with a question that it waits for; `Callers` does
    // not wait.
    const bool begun = sd_bus_set_address(made, address.c_str()) >= 0 &&
                       sd_bus_set_bus_client(made, 1) >= 0 && sd_bus_set_trusted(made, 1) >= 0 &&
                       callers.attach(*made) && sd_bus_start(made) >= 0;
    if (!begun) {
        connection.reset();
        wakeAt(now() + searchPeriod);
        return;
    }
    // Who answers there now may be another one than the one that was reached. A slow one gets
    // longer each time.
    patience = std::min(patience * 2, longestPatience);
    givesUpAt = now() + patience;
    for (User* user : users)
        user->attach(*made);
    settle();
}

// The descriptor is closed with the connection, upon which the kernel ends its watch.
void Link::lost() {
    isUp = false;
    watched = -1;
    callers.forget();
    connection.reset();
    wakeAt(now() + searchPeriod);
}

Link::State Link::wait(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (connection && !isUp) {
        const int done = sd_bus_process(connection.get(), nullptr);
        if (done < 0) {
            lost();
            break;
        }
        noteUp();
        if (isUp || done > 0) continue;
        const auto left =
            std::chrono::ceil<microseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) break;
        (void)sd_bus_wait(connection.get(), static_cast<std::uint64_t>(left.count()));
    }
    settle();
    if (isUp) return State::up;
    log.write(connection ? "the session bus does not answer; the program goes on without it"
                         : "no session bus: the program is not reached over it");
    return connection ? State::silent : State::absent;
}

void Link::start() {
    isStarted = true;
    descriptors.watchReadable(together, [this] { ready(); });
    settle();
}

void Link::noteUp() {
    if (isUp || sd_bus_is_ready(connection.get()) <= 0) return;
    isUp = true;
    patience = searchPeriod / 2;
    for (User* user : users)
        user->up();
}

void Link::ready() {
    std::uint64_t expired = 0;
    if (::read(alarm, &expired, sizeof expired) > 0) wakesAt = never;
    // Inside a loop that handling a message runs. The library reads no other one meanwhile; the
    // watch would only spin.
    if (isHandling) {
        descriptors.unwatch(together);
        isStarted = false;
        return;
    }
    if (connection && !isUp && now() >= givesUpAt) lost();
    if (!connection) connect();
    for (int count = 0; count < messagesInATurn && connection && handleOne(); ++count)
        doPending();
    if (std::exchange(isCalled, false))
        for (std::size_t index = 0; index < users.size(); ++index)
            users[index]->turn();
    settle();
}

bool Link::handleOne() {
    isHandling = true;
    const int done = sd_bus_process(connection.get(), nullptr);
    isHandling = false;
    if (!isStarted) start();
    if (done < 0)
        lost();
    else
        noteUp();
    return done > 0;
}

// Taken out first: what is done may run a loop that comes here again.
void Link::doPending() {
    while (!pending.empty()) {
        const auto work = std::move(pending.front());
        pending.pop_front();
        work();
    }
}

void Link::callSoon() {
    isCalled = true;
    wakeAt(1);
}

void Link::settle() {
    if (!connection) return;
    const int descriptor = sd_bus_get_fd(connection.get());
    const int wanted = sd_bus_get_events(connection.get());
    if (descriptor < 0 || wanted < 0) return;
    epoll_event event{.events = static_cast<std::uint32_t>(wanted), .data = {.fd = descriptor}};
    if (watched != descriptor)
        (void)::epoll_ctl(together, EPOLL_CTL_ADD, descriptor, &event);
    else if (watchedFor != event.events)
        (void)::epoll_ctl(together, EPOLL_CTL_MOD, descriptor, &event);
    watched = descriptor;
    watchedFor = event.events;
    // Zero for what has been read already, the end of time for nothing.
    std::uint64_t due = never;
    if (sd_bus_get_timeout(connection.get(), &due) < 0) due = never;
    if (!isUp) due = std::min(due, givesUpAt);
    wakeAt(isCalled ? 1 : std::max<std::uint64_t>(due, 1));
}

void Link::wakeAt(std::uint64_t time) {
    if (time == std::exchange(wakesAt, time)) return;
    itimerspec when{};
    if (time != never) {
        when.it_value.tv_sec = static_cast<time_t>(time / 1'000'000);
        when.it_value.tv_nsec = static_cast<long>(time % 1'000'000) * 1'000;
    }
    (void)::timerfd_settime(alarm, TFD_TIMER_ABSTIME, &when, nullptr);
}

} // namespace bus
