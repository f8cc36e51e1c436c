#include "Table.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace bench {

void rest(int milliseconds) {
    poll(nullptr, 0, milliseconds);
}

std::string number(double value, const char* unit, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f%s", digits, value, unit);
    return text;
}

void row(const std::string& what, const std::string& required,
         std::initializer_list<std::string> cells) {
    std::printf("%-66s %-14s", what.c_str(), required.c_str());
    for (const std::string& cell : cells)
        std::printf(" %-34s", cell.c_str());
    std::printf("\n");
    std::fflush(stdout);
}

void printGroups(int count, char** arguments, std::initializer_list<Group> groups) {
    if (count > 1) seconds = std::atof(arguments[1]);
    const std::vector<std::string_view> wanted(arguments + std::min(count, 2), arguments + count);
    for (const Group& group : groups)
        if (wanted.empty() || std::ranges::find(wanted, group.name) != wanted.end()) group.print();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::string longest(int tries, const std::function<std::optional<double>(int)>& tryOnce) {
    std::vector<double> times;
    int repeated = 0;
    Standstills standstills;
    while (static_cast<int>(times.size()) < tries) {
        standstills.takeAny();
        const auto time = tryOnce(static_cast<int>(times.size()));
        if (standstills.takeAny() && repeated < tries) {
            ++repeated;
            continue;
        }
        if (!time) return "never";
        times.push_back(*time);
    }
    return number(std::ranges::max(times), " ms", 1) + " (median " +
           number(median(times), " of ", 1) + std::to_string(times.size()) + ")" +
           (repeated > 0 ? " " + std::to_string(repeated) + " again" : "");
}

std::string thresholds(int velocity, const std::function<bool(double, int)>& crosses) {
    const auto mostCross = [&](double speed, int hz) {
        int crossed = 0;
        for (int i = 0; i < 5 && crossed < 3 && i - crossed < 3; ++i)
            crossed += crosses(speed, hz) ? 1 : 0;
        return crossed == 3;
    };
    const double expected = 60 * 0.03 * velocity * velocity;
    std::string text;
    for (const int hz : {125, 500, 1000, 8000}) {
        double below = 0.3 * expected, above = 2 * expected;
        for (int i = 0; i < 7; ++i) {
            const double middle = (below + above) / 2;
            (mostCross(middle, hz) ? above : below) = middle;
        }
        const double speed = (below + above) / 2;
        text += number(speed, " (", 0) + number(speed / expected, ") ");
    }
    return text;
}

} // namespace bench
