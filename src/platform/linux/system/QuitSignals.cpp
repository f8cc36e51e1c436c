#include "platform/linux/system/QuitSignals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>

namespace platform::linux {

namespace {

std::atomic<int> wakeDescriptor{-1};
std::atomic<unsigned> patience{0};

void wake(int) {
    const int before = errno;
    endAfter(patience);
    const char byte = 1;
    // A full pipe wakes the loop just as well.
    if (::write(wakeDescriptor, &byte, 1) < 0) errno = 0;
    errno = before;
}

} // namespace

void endAfter(unsigned seconds) {
    struct sigaction action {};
    action.sa_handler = SIG_DFL; // which ends the process
    ::sigaction(SIGALRM, &action, nullptr);
    ::alarm(seconds);
}

QuitSignals::QuitSignals(Descriptors& descriptorService, std::function<void()> quit,
                         unsigned seconds)
    : descriptors(descriptorService) {
    patience = seconds;
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return; // the signals keep their default
    readEnd = FileHandle(ends[0]);
    writeEnd = FileHandle(ends[1]);
    wakeDescriptor = ends[1];
    descriptors.watchReadable(ends[0], [this, handler = std::move(quit)] {
        char bytes[16];
        while (::read(readEnd.get(), bytes, sizeof bytes) > 0) {
        }
        handler();
    });
    for (auto& [number, before] : previous) {
        ::sigaction(number, nullptr, &before);
        if (number == SIGHUP && before.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = wake;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        ::sigaction(number, &action, nullptr);
    }
}

QuitSignals::~QuitSignals() {
    if (!readEnd) return;
    for (const auto& [number, before] : previous)
        ::sigaction(number, &before, nullptr);
    wakeDescriptor = -1;
    descriptors.unwatch(readEnd.get());
}

} // namespace platform::linux
