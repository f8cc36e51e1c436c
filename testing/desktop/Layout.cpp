#include "testing/desktop/Layout.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace support {

namespace {

int takeNumber(std::string_view& rest, std::string_view whole) {
    int number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error != std::errc{} || number < 0)
        throw std::invalid_argument("not a monitor: " + std::string(whole));
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return number;
}

void takeLetter(std::string_view& rest, char letter, std::string_view whole) {
    if (rest.empty() || rest.front() != letter)
        throw std::invalid_argument("not a monitor: " + std::string(whole));
    rest.remove_prefix(1);
}

} // namespace

Monitor parseMonitor(std::string_view text, std::string output) {
    std::string_view rest = text;
    Monitor monitor{std::move(output), {}, false};
    monitor.area.width = takeNumber(rest, text);
    takeLetter(rest, 'x', text);
    monitor.area.height = takeNumber(rest, text);
    takeLetter(rest, '+', text);
    monitor.area.x = takeNumber(rest, text);
    takeLetter(rest, '+', text);
    monitor.area.y = takeNumber(rest, text);
    if (rest == "*")
        monitor.primary = true;
    else if (!rest.empty())
        throw std::invalid_argument("not a monitor: " + std::string(text));
    return monitor;
}

Layout parseLayout(std::string_view text) {
    Layout layout;
    for (std::string_view rest = text;;) {
        const std::size_t comma = rest.find(',');
        layout.push_back(
            parseMonitor(rest.substr(0, comma), "DUMMY" + std::to_string(layout.size())));
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
    const auto marked = std::count_if(layout.begin(), layout.end(),
                                      [](const Monitor& monitor) { return monitor.primary; });
    if (marked > 1) throw std::invalid_argument("two primary monitors: " + std::string(text));
    if (marked == 0) layout.front().primary = true;
    return layout;
}

Area boundsOf(const Layout& layout) {
    Area bounds;
    for (const Monitor& monitor : layout) {
        bounds.width = std::max(bounds.width, monitor.area.x + monitor.area.width);
        bounds.height = std::max(bounds.height, monitor.area.y + monitor.area.height);
    }
    return bounds;
}

} // namespace support
