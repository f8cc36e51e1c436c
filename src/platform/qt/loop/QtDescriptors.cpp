#include "platform/qt/loop/QtDescriptors.h"

#include <QSocketNotifier>
#include <cerrno>
#include <sys/epoll.h>
#include <system_error>
#include <unistd.h>

namespace platform::qt {

QtDescriptors::QtDescriptors() : together(epoll_create1(EPOLL_CLOEXEC)) {
    if (together < 0) throw std::system_error(errno, std::generic_category(), "epoll");
}

QtDescriptors::~QtDescriptors() {
    notifier.reset();
    close(together);
}

void QtDescriptors::watchReadable(int fd, std::function<void()> ready) {
    unwatch(fd);
    epoll_event event{.events = EPOLLIN, .data = {.fd = fd}};
    if (epoll_ctl(together, EPOLL_CTL_ADD, fd, &event) < 0)
        throw std::system_error(errno, std::generic_category(), "epoll");
    watches[fd] = std::move(ready);
}

void QtDescriptors::unwatch(int fd) {
    // One that has been closed already is no longer part of it.
    if (watches.erase(fd) > 0) epoll_ctl(together, EPOLL_CTL_DEL, fd, nullptr);
}

void QtDescriptors::start() {
    if (notifier) return;
    notifier = std::make_unique<QSocketNotifier>(together, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, [this] { callReady(); });
}

// One at a time: what is called may run a loop of its own, which reads the others, and after which
// an answer of before it would no longer be true. The loop comes back for the next one.
void QtDescriptors::callReady() {
    epoll_event event{};
    if (epoll_wait(together, &event, 1, 0) < 1) return;
    const auto watch = watches.find(event.data.fd);
    if (watch == watches.end()) return;
    const auto ready = watch->second; // the watch may be ended from inside the call
    ready();
}

} // namespace platform::qt
