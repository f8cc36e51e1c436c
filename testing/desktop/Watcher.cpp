#include "testing/desktop/Watcher.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

namespace support {

Watcher::Watcher(const std::string& display, const Area& home, int hz)
    : x(display), area(home), rate(hz) {
    look(); // the state before anything that follows the constructor
    thread = std::thread([this] { watch(); });
}

Watcher::~Watcher() {
    ending = true;
    if (thread.joinable()) thread.join();
}

Watcher::Report Watcher::finish() {
    ending = true;
    if (thread.joinable()) thread.join();
    if (failed) throw std::runtime_error("the X server went away while the cursor was watched");
    return report;
}

void Watcher::watch() {
    constexpr long nanosecondsInSecond = 1'000'000'000;
    timespec next{};
    clock_gettime(CLOCK_MONOTONIC, &next);
    while (!failed) {
        const bool last = ending;
        look();
        if (last) return;
        next.tv_nsec += nanosecondsInSecond / rate;
        if (next.tv_nsec >= nanosecondsInSecond) {
            next.tv_nsec -= nanosecondsInSecond;
            ++next.tv_sec;
        }
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
    }
}

void Watcher::look() {
    const auto reply =
        own(xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
    if (!reply) {
        failed = true;
        return;
    }
    const int atX = reply->root_x;
    const int atY = reply->root_y;
    const auto now = Clock::now();
    if (report.looks == 0) {
        report.leftmost = report.rightmost = atX;
        report.topmost = report.lowest = atY;
    }
    ++report.looks;
    report.leftmost = std::min(report.leftmost, atX);
    report.rightmost = std::max(report.rightmost, atX);
    report.topmost = std::min(report.topmost, atY);
    report.lowest = std::max(report.lowest, atY);
    const bool outside = !area.contains(atX, atY);
    if (outside) {
        ++report.looksOutside;
        const int beyond = std::max({area.x - atX, atX - (area.x + area.width - 1), area.y - atY,
                                     atY - (area.y + area.height - 1)});
        report.farthestOutside = std::max(report.farthestOutside, beyond);
        if (!wasOutside) leftAt = now;
        report.longestOutsideMs =
            std::max(report.longestOutsideMs,
                     std::chrono::duration<double, std::milli>(now - leftAt).count());
    }
    wasOutside = outside;
}

} // namespace support
