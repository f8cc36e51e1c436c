#include "platform/memory/Effects.h"

#include <algorithm>

namespace platform::memory {

namespace {

bool isWanted(std::string_view name, std::initializer_list<std::string_view> names) {
    return names.size() == 0 || std::ranges::find(names, name) != names.end();
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
    std::vector<std::string> texts;
    for (const Kept& effect : kept)
        if (isWanted(effect.name, names))
            texts.push_back(effect.name + " {" + effect.members + "}");
    return texts;
}

std::vector<std::string> Effects::timedLines(std::initializer_list<std::string_view> names) const {
    std::vector<std::string> texts;
    for (const Kept& effect : kept)
        if (isWanted(effect.name, names))
            texts.push_back(lineOf({effect.nanoseconds, effect.name, effect.members}));
    return texts;
}

std::vector<std::string> Effects::take(std::initializer_list<std::string_view> names) {
    auto texts = lines(names);
    clear();
    return texts;
}

} // namespace platform::memory
