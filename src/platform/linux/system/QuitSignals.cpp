#include "platform/linux/system/QuitSignals.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>

namespace platform::linux {

namespace {

std::atomic<int> wakeDescriptor{-1};
std::atomic<unsigned> patience{0};

void wake(int number) {
    const int before = errno;
    if (number != SIGUSR1) endAfter(patience);
    const char byte = static_cast<char>(number);
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
                         std::function<void()> startAgain, unsigned seconds)
    : descriptors(descriptorService) {
    patience = seconds;
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return; // the signals keep their default
    readEnd = FileHandle(ends[0]);
    writeEnd = FileHandle(ends[1]);
    wakeDescriptor = ends[1];
    descriptors.watchReadable(ends[0], [this, quits = std::move(quit),
                                        starts = std::move(startAgain)] {
        char bytes[16];
        bool isEnd = false;
        for (ssize_t count; (count = ::read(readEnd.get(), bytes, sizeof bytes)) > 0;)
            isEnd |= std::any_of(bytes, bytes + count, [](char byte) { return byte != SIGUSR1; });
        isEnd ? quits() : starts();
    });
    for (auto& [number, before] : previous) {
        ::sigaction(number, nullptr, &before);
        if (number == SIGHUP && before.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = wake;
        action.sa_flags = number == SIGUSR1 ? static_cast<int>(SA_RESTART)
                                            : static_cast<int>(SA_RESTART | SA_RESETHAND);
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
