#include "util/MacUtils.h"

#include <algorithm>

namespace palisor {

namespace {

std::string padded(int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string two(int number) {
    return padded(number, 2);
}

std::string yearOf(const platform::LocalTime& time) {
    return padded(time.year, 4);
}

int onTwelveHourClock(int hour) {
    return hour % 12 == 0 ? 12 : hour % 12;
}

} // namespace

std::string MacUtils::getYearNumber(const platform::Platform& services) {
    return yearOf(services.system.localTime());
}

std::string MacUtils::univokeDate(const platform::Platform& services) {
    const auto now = services.system.localTime();
    return yearOf(now) + "/" + two(now.month) + "/" + two(now.day) + "-" +
           two(onTwelveHourClock(now.hour)) + ":" + two(now.minute) + ":" + two(now.second);
}

std::string MacUtils::currentDateqweString(const platform::Platform& services) {
    const auto now = services.system.localTime();
    return two(now.day) + "-" + two(now.month) + "-" + yearOf(now) + " " + two(now.hour) + "." +
           two(now.minute) + "." + two(now.second);
}

} // namespace palisor
