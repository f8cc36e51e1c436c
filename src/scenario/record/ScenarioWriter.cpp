#include "scenario/record/ScenarioWriter.h"

#include "platform/HotKeys.h"

#include <array>
#include <optional>

namespace record {

using platform::EventType;
using platform::memory::Member;

namespace {

struct NamedType {
    EventType type;
    std::string_view name;
};

constexpr std::array<NamedType, 15> names{{
    {EventType::leftMouseDown, "leftMouseDown"},
    {EventType::leftMouseUp, "leftMouseUp"},
    {EventType::rightMouseDown, "rightMouseDown"},
    {EventType::rightMouseUp, "rightMouseUp"},
    {EventType::mouseMoved, "mouseMoved"},
    {EventType::leftMouseDragged, "leftMouseDragged"},
    {EventType::rightMouseDragged, "rightMouseDragged"},
    {EventType::scrollWheel, "scrollWheel"},
    {EventType::tabletPoint, "tabletPoint"},
    {EventType::tabletProximity, "tabletProximity"},
    {EventType::otherMouseDown, "otherMouseDown"},
    {EventType::otherMouseUp, "otherMouseUp"},
    {EventType::otherMouseDragged, "otherMouseDragged"},
    {EventType::keyDown, "keyDown"},
    {EventType::keyUp, "keyUp"},
}};

std::string_view nameOf(EventType type) {
    for (const NamedType& named : names)
        if (named.type == type) return named.name;
    return "mouseMoved";
}

} // namespace

ScenarioWriter::ScenarioWriter(const std::string& path) : file(path, std::ios::trunc) {}

void ScenarioWriter::begin(const platform::Bundle& bundle, const platform::Dictionary& settings,
                           const platform::Displays& displays) {
    platform::Dictionary information;
    information["IDApp"] = platform::Value{std::int64_t{bundle.integer("IDApp")}};
    for (const char* key :
         {"CFBundleIdentifier", "CFBundleDisplayName", "CFBundleShortVersionString"})
        information[key] = platform::Value{std::string(bundle.string(key))};
    step("bundle", Member{"info", information});

    // Only these types can stand in a step.
    platform::Dictionary plain;
    std::optional<platform::Shortcut> shortcut;
    for (const auto& [key, value] : settings) {
        if (const auto stored = platform::Shortcut::fromValue(&value))
            shortcut = stored;
        else if (value.held.index() <= 2)
            plain[key] = value;
    }
    step("defaults", Member{"set", plain});
    if (shortcut)
        step("shortcut", Member{"keyCode", shortcut->keyCode},
             Member{"modifierFlags", shortcut->modifierFlags});
    else
        step("shortcut", Member{"clear", true});
    screens(displays);
    step("launch");
    launched = true;
    last = Clock::now();
}

void ScenarioWriter::screens(const platform::Displays& displays) {
    std::vector<platform::Rect> frames;
    std::size_t main = 0;
    for (const platform::Screen& screen : displays.screens()) {
        if (screen.id == displays.mainScreen()) main = frames.size();
        frames.push_back(screen.frame);
    }
    step("screens", Member{"frames", frames}, Member{"main", main});
}

void ScenarioWriter::input(const platform::InputEvent& event) {
    if (event.type == EventType::flagsChanged)
        step("flagsChanged", Member{"keyCode", event.keyCode});
    else
        step("pointer", Member{"at", event.location}, Member{"type", nameOf(event.type)});
}

void ScenarioWriter::passTime() {
    if (!launched) return;
    const auto now = Clock::now();
    const std::int64_t passed =
        std::chrono::duration_cast<std::chrono::nanoseconds>(now - last).count();
    last = now;
    std::string line = R"({"do":"advance")";
    platform::memory::writeMember(line, "seconds", platform::memory::Seconds{passed});
    write(line + "}");
}

void ScenarioWriter::write(const std::string& line) {
    file << line << '\n';
    file.flush();
}

} // namespace record
