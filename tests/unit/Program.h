#pragma once

#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "platform/memory/MemoryPlatform.h"
#include "testing/Layouts.h"

#include <initializer_list>
#include <string>
#include <vector>

// The program over the memory platform, as a test sees it.

namespace palisor {

using Lines = std::vector<std::string>;

inline constexpr const char* sideBySide = "1920x1080+0+0,1280x1024+1920+56";
/// Its monitors, in top-left coordinates; they are level with each other below.
inline constexpr platform::Rect left{0, 0, 1920, 1080}, right{1920, 56, 1280, 1024};
inline constexpr const char* oneMonitor = "1920x1080+0+0";

struct Program {
    explicit Program(int variant, std::string_view layout = sideBySide) {
        platform.bundle.set("IDApp", platform::Value{std::int64_t{variant}});
        platform.bundle.set("CFBundleIdentifier", platform::Value{"com.tamberlo.palisor"});
        platform.displays.replace(screensFromLayout(layout));
        // Without one the barrier asks for a shortcut until it gets one.
        setting(keys::customShortcut, shortcut.toValue());
        platform.effects.keep();
    }

    static constexpr platform::Shortcut shortcut{40, platform::Shortcut::control |
                                                         platform::Shortcut::command};

    /// The first run is over, and the information window is no longer wanted at start.
    Program& settled() {
        setting(keys::PRIMOACCESSO, platform::Value{"1"});
        setting(keys::PRIMOACCESSOCONSLIDER, platform::Value{"1"});
        setting(keys::SCHEDULE, platform::Value{"5"});
        setting(keys::CHECK_0, platform::Value{"1"});
        return *this;
    }

    /// Settled; launches and forgets the effects of doing so.
    Program& launched() {
        settled();
        app.applicationDidFinishLaunching();
        platform.effects.take();
        return *this;
    }

    /// As an outside edit: no effect of it is kept.
    void setting(std::string_view key, platform::Value value) {
        platform.settings.edit(key, std::move(value));
    }

    /// Moves the cursor and delivers an event there.
    void pointer(platform::Point at, platform::EventType type = platform::EventType::mouseMoved) {
        platform.pointer.place(at);
        platform.input.deliver({.type = type, .location = at});
    }

    void modifier(std::uint16_t keyCode) {
        platform.input.deliver({.type = platform::EventType::flagsChanged, .keyCode = keyCode});
    }

    /// The effects since the last call, of the named kinds; of every kind when none is named.
    Lines effects(std::initializer_list<std::string_view> names = {}) {
        return platform.effects.take(names);
    }

    /// The writes of one setting since the last call; other effects are forgotten.
    Lines writesOf(std::string_view key) {
        Lines writes = effects({"write"});
        const std::string start = R"(write {"key":")" + std::string(key) + '"';
        std::erase_if(writes, [&start](const auto& line) { return !line.starts_with(start); });
        return writes;
    }

    ScreenId screen(std::size_t index) { return platform.displays.screens()[index].id; }

    platform::memory::MemoryPlatform platform;
    AppDelegate app{platform.services()};
};

} // namespace palisor
