#pragma once

#include "testing/Wakeups.h"
#include "testing/desktop/Product.h"
#include "testing/sway/PrivateSway.h"
#include "testing/sway/SwayKeys.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

// The program itself on a private sway, with a mouse and a keyboard for input, and layers over the
// other monitor for evidence.

namespace desktop {

using support::PrivateSway;
using support::SwayHand;
using support::SwayKeys;
using support::Witness;

constexpr std::uint32_t clear = 0, white = 0xffffffff;

class Sway : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
        begin({});
    }

    /// A sway of its own, with the cursor on the middle of the first monitor.
    void begin(const PrivateSway::Options& options) {
        program.reset();
        for (auto& background : backgrounds)
            background.reset();
        watching.reset();
        later.reset();
        hand.reset();
        sway.emplace(options);
        outputs = std::ranges::count(options.layout, ',') + 1;
        hand.emplace(*sway);
        hand->moveTo(960, 540);
    }

    /// Starts a product and returns when everything is in place: the barrier's other monitor is
    /// dark.
    void start(const Setting& setting = {}) {
        spawn(setting);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
        const bool darkens = setting.active && setting.product == "palisor";
        ASSERT_TRUE(darkens ? darkSoon(2) : brightSoon()) << program->errors();
    }
    /// Starts it and does not wait for anything.
    void spawn(const Setting& setting) {
        Entries entries = setting.more;
        entries.insert({{"ATTIVO", flag(setting.active)},
                        {"VELOCITY_OPTION", flag(setting.pushOption)},
                        {"VELOCITY", number(setting.velocity)},
                        {"OTHERS_DARK", number(setting.othersDark)}});
        entries.merge(pastTheFirstStart());
        std::ofstream(sway->configFolder() + "/com.tamberlo." + setting.product + ".plist")
            << propertyList(entries);
        backgrounds.resize(static_cast<std::size_t>(outputs));
        for (std::size_t output = 0; output < backgrounds.size(); ++output)
            layBackground(output);
        program = run(setting);
    }

    /// White, instead of an earlier one.
    void layBackground(std::size_t output) {
        backgrounds[output] = std::make_unique<Witness>(sway->socket(), output,
                                                        Witness::Where::belowEverything, white);
    }

    std::unique_ptr<support::ChildProcess> run(const Setting& setting = {}) const {
        std::vector<std::string> options{"--verbose"};
        if (!setting.hold) options.insert(options.end(), {"--hold", "off"});
        return sway->spawn(programs() + "/" + setting.product, options);
    }

    bool isDark(int output = 2) const { return sway->brightness(output) < 128; }
    /// That monitor alone, numbered from 1 on.
    bool darkSoon(int output) const {
        return waitUntil([&] { return isDark(output) && !isDark(3 - output); });
    }
    bool brightSoon() const {
        return waitUntil([&] { return !isDark(1) && !isDark(2); });
    }
    /// From now on it is noticed when the cursor is on the second monitor: by a layer above all
    /// that the program has there. Before `start` alone, as the order of layers is that of their
    /// coming, and differs between releases, so that there is another one after it.
    void startWatched(const Setting& setting = {}) {
        watching = witness(1);
        start(setting);
        later = witness(1);
    }
    int timesOutside() const { return watching->report().entered + later->report().entered; }
    std::unique_ptr<Witness> witness(std::size_t output) const {
        return std::make_unique<Witness>(sway->socket(), output, Witness::Where::aboveEverything,
                                         clear);
    }
    /// Whether the mouse can leave the first monitor. Only where no program holds it, nor watches.
    bool isFree() {
        const auto other = witness(1);
        hand->moveTo(1900, 500);
        hand->push(20, 0, 50, mouseRate);
        return other->report().entered > 0;
    }
    /// Ends the program, so that nothing of it lies over the monitors.
    bool cursorIsOn(std::size_t output) {
        program->signal(SIGKILL);
        program->wait();
        const auto there = witness(output);
        // What comes to lie under a resting cursor may be told so by the next motion only.
        return waitUntil([&] {
            hand->relative(0, 1);
            return there->report().isOver;
        });
    }

    /// How often the program was woken, up to now.
    long wakeups() const { return support::wakeups(program->pid()); }

    std::optional<PrivateSway> sway;
    long outputs = 2;
    std::optional<SwayHand> hand;
    std::vector<std::unique_ptr<Witness>> backgrounds; ///< of the monitors
    std::unique_ptr<Witness> watching, later;
    std::unique_ptr<support::ChildProcess> program;
};

} // namespace desktop
