#include "platform/memory/SystemInfo.h"

#include <chrono>

namespace platform::memory {

LocalTime SystemInfo::localTime() const {
    using namespace std::chrono;
    const seconds passed{(clock.nanoseconds - shownAt) / 1'000'000'000};
    if (passed.count() == 0) return shown; // also a leap second, and a day that no month has
    const sys_days date{year{shown.year} / shown.month / shown.day};
    const auto now =
        date + hours{shown.hour} + minutes{shown.minute} + seconds{shown.second} + passed;
    const auto today = floor<days>(now);
    const year_month_day calendar{today};
    const hh_mm_ss time{now - today};
    return {.year = static_cast<int>(calendar.year()),
            .month = static_cast<int>(static_cast<unsigned>(calendar.month())),
            .day = static_cast<int>(static_cast<unsigned>(calendar.day())),
            .hour = static_cast<int>(time.hours().count()),
            .minute = static_cast<int>(time.minutes().count()),
            .second = static_cast<int>(time.seconds().count())};
}

void SystemInfo::setLocalTime(LocalTime time) {
    shown = time;
    shownAt = clock.nanoseconds;
}

} // namespace platform::memory
