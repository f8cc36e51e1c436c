#include "scenario/record/ScenarioWriter.h"

#include "platform/HotKeys.h"

namespace record {

using platform::EventType;

ScenarioWriter::ScenarioWriter(const std::string& path) : file(path, std::ios::trunc) {}

void ScenarioWriter::begin(const platform::Bundle& bundle, const platform::Dictionary& settings,
                           const platform::Displays& displays) {
    platform::Dictionary information;
    information["IDApp"] = platform::Value{std::int64_t{bundle.integer("IDApp")}};
    for (const char* key :
         {"CFBundleIdentifier", "CFBundleDisplayName", "CFBundleShortVersionString"})
        information[key] = platform::Value{std::string(bundle.string(key))};
    step(names::bundle, Member{names::info, information});

    // Only these types can stand in a step.
    platform::Dictionary plain;
    std::optional<platform::Shortcut> shortcut;
    for (const auto& [key, value] : settings) {
        if (const auto stored = platform::Shortcut::fromValue(&value))
            shortcut = stored;
        else if (value.held.index() <= 2)
            plain[key] = value;
    }
    step(names::defaults, Member{names::set, plain});
    if (shortcut)
        step(names::shortcut, Member{names::keyCode, shortcut->keyCode},
             Member{names::modifierFlags, shortcut->modifierFlags});
    else
        step(names::shortcut, Member{names::clear, true});
    screens(displays);
    step(names::launch);
    last = Clock::now();
}

void ScenarioWriter::screens(const platform::Displays& displays) {
    std::vector<platform::Rect> frames;
    std::size_t main = 0;
    for (const platform::Screen& screen : displays.screens()) {
        if (screen.id == displays.mainScreen()) main = frames.size();
        frames.push_back(screen.frame);
    }
    step(names::screens, Member{names::frames, frames}, Member{names::main, main});
}

void ScenarioWriter::input(const platform::InputEvent& event) {
    if (event.type == EventType::flagsChanged)
        step(names::flagsChanged, Member{names::keyCode, event.keyCode});
    else
        step(names::pointer, Member{names::at, event.location},
             Member{names::type, scenario::nameOf(event.type)});
}

void ScenarioWriter::passTime() {
    if (!last) return;
    const auto now = Clock::now();
    const platform::json::Seconds passed{
        std::chrono::duration_cast<std::chrono::nanoseconds>(now - *last).count()};
    last = now;
    write(names::advance, Member{names::seconds, passed});
}

} // namespace record
