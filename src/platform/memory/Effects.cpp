#include "platform/memory/Effects.h"

#include <algorithm>

namespace platform::memory {

namespace {

/// What `textOf` makes of each effect that is named, or of all where no names are given.
std::vector<std::string> texts(const auto& effects, std::initializer_list<std::string_view> names,
                               auto textOf) {
    std::vector<std::string> made;
    for (const auto& effect : effects)
        if (names.size() == 0 || std::ranges::find(names, effect.name) != names.end())
            made.push_back(textOf(effect));
    return made;
}

} // namespace

std::string lineOf(const Effect& effect) {
    std::string line = '{' + json::members(Member{"t", json::Seconds{effect.nanoseconds}},
                                           Member{"effect", effect.name});
    if (!effect.members.empty()) (line += ',') += effect.members;
    return line += '}';
}

void Effects::deliver(std::string_view name, std::string members) {
    if (sink) sink({clock.nanoseconds, name, members});
    if (keeping) kept.push_back({clock.nanoseconds, std::string(name), std::move(members)});
}

std::vector<std::string> Effects::lines(std::initializer_list<std::string_view> names) const {
    return texts(kept, names, [](const Kept& e) { return e.name + " {" + e.members + "}"; });
}

std::vector<std::string> Effects::timedLines(std::initializer_list<std::string_view> names) const {
    return texts(kept, names, [](const Kept& e) {
        return lineOf({e.nanoseconds, e.name, e.members});
    });
}

std::vector<std::string> Effects::take(std::initializer_list<std::string_view> names) {
    auto taken = lines(names);
    clear();
    return taken;
}

} // namespace platform::memory
