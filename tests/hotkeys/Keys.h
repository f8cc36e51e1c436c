#pragma once

#include "platform/memory/Settings.h"
#include "platform/x11/keys/HotKeys.h"
#include "testing/KeptLog.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "x11/TestLoop.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace hotkeytests {

using platform::Shortcut;
namespace key = support::key;

// By their place: what the U.S. layout prints there.
inline constexpr std::uint16_t keyA = 0, keyY = 16, keyZ = 6, keyK = 40, keyE = 14, tab = 48;
inline constexpr const char* storedUnder = "theShortcut";

/// The hot keys of a program on a private desktop with a window manager, and somebody's hand.
class HotKeysOnADesktop : public testing::Test {
  protected:
    explicit HotKeysOnADesktop(const std::string& windowManager = "openbox") {
        // The first key of a keyboard makes the server announce its mapping, upon which a window
        // manager gives up its combinations for a moment.
        hand.type(key::leftShift);
        if (!windowManager.empty()) desktop.startWindowManager(windowManager);
        opened = platform::x11::Connection::open(desktop.display(), loop, log, [] {});
        if (!opened.connection) throw std::runtime_error(opened.error);
        hotKeys.emplace(*opened.connection, settings, log, [this](std::function<void()> later) {
            loop.schedule(0, false, "later", std::move(later));
        });
        settings.registerDefault(probe, Shortcut{probeKey, Shortcut::command}.toValue());
        hotKeys->bindShortcut(probe, [this] { ++probes; });
    }

    void bind(const Shortcut& shortcut) {
        settings.set(storedUnder, shortcut.toValue());
        hotKeys->bindShortcut(storedUnder, [this] { ++presses; });
    }

    /// How often the bound action has run when everything pressed before has come through: another
    /// combination is pressed, which is known to work, and comes last.
    int pressesSoFar() {
        const int before = probes;
        hand.chord({key::leftSuper, probeKeysym});
        EXPECT_TRUE(loop.runUntil([&] { return probes > before; })) << "the probe did not come";
        return presses;
    }

    /// Waits until the program's connection has been sent so many more key presses.
    bool hearsPresses(int count) {
        class Counter final : public platform::x11::Listener {
          public:
            void handle(const xcb_generic_event_t&) override { ++heard; }
            int heard = 0;
        } counter;
        opened.connection->listen(counter, {XCB_KEY_PRESS});
        const bool all = loop.runUntil([&] { return counter.heard >= count; });
        opened.connection->forget(counter);
        return all;
    }

    void setLayout(const std::string& layout) {
        const auto done = desktop.spawn("setxkbmap", {layout});
        ASSERT_EQ(done->wait(), 0) << done->errors();
        opened.connection->sync();
    }

    static constexpr const char* probe = "probe";
    static constexpr std::uint16_t probeKey = 101; // F9
    static constexpr xcb_keysym_t probeKeysym = 0xffc6;

    support::PrivateDesktop desktop{"1280x800+0+0"};
    x11tests::TestLoop loop;
    testing_support::KeptLog log;
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Settings settings{effects};
    platform::x11::Connection::Opened opened;
    std::optional<platform::x11::HotKeys> hotKeys;
    support::Hand hand{desktop.display()};
    int presses = 0;
    int probes = 0;
};

} // namespace hotkeytests
