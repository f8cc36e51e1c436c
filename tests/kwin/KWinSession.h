#pragma once

#include "testing/Wakeups.h"
#include "testing/desktop/Product.h"
#include "testing/kwin/PrivateKWin.h"
#include "testing/sway/WaylandClient.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

// The program itself on a private KWin, with a mouse and a keyboard for input, and the compositor's
// own word and layers over the other monitor for evidence.

namespace desktop {

using support::KWinHand;
using support::PrivateKWin;
using support::Witness;

constexpr int width = 1280; // of each monitor
constexpr std::uint32_t clear = 0, white = 0xffffffff;

class KWin : public testing::Test {
  protected:
    static void SetUpTestSuite() { support::becomeAUser(); }

    void SetUp() override {
        if (const auto reason = PrivateKWin::missing()) GTEST_SKIP() << *reason;
        begin();
    }

    /// A KWin of its own, with the cursor on the middle of the first monitor.
    void begin(const PrivateKWin::Options& options = {}) {
        program.reset();
        witnesses.clear();
        hand.reset();
        kwin.emplace(options);
        hand.emplace(*kwin);
        hand->moveTo(640, 360);
    }

    /// The same where the program is installed, which has KWin up to 6.3 tell it of held keys.
    void beginInstalled() {
        std::ifstream file(SESSION_FILE);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::string folder = "@PROGRAMS@";
        text.replace(text.find(folder), folder.size(), programs());
        begin({.desktopFile = text});
    }

    /// Starts a product and returns when it holds, or, where it is to be off, when it has started.
    void start(const Setting& setting = {}) {
        spawn(setting);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
        const bool holds = setting.active && setting.hold && setting.product == "palisor";
        ASSERT_TRUE(!holds || isClosedSoon()) << program->errors() << kwin->log();
    }
    void spawn(const Setting& setting) {
        Entries entries = setting.more;
        entries.insert({{"ATTIVO", flag(setting.active)},
                        {"VELOCITY_OPTION", flag(setting.pushOption)},
                        {"VELOCITY", number(setting.velocity)},
                        {"OTHERS_DARK", number(setting.othersDark)}});
        entries.merge(pastTheFirstStart());
        std::ofstream(kwin->configFolder() + "/com.tamberlo." + setting.product + ".plist")
            << propertyList(entries);
        std::vector<std::string> options{"--verbose"};
        if (!setting.hold) options.insert(options.end(), {"--hold", "off"});
        program = kwin->spawn(programs() + "/" + setting.product, options);
    }

    bool isClosed() { return kwin->evaluate("options.edgeBarrier > 1000") == "true"; }
    bool isClosedSoon() {
        return waitUntil([&] { return isClosed(); }, std::chrono::seconds(8));
    }
    /// The user's own values are in force.
    bool isFree(int edge = 100, bool corner = true) {
        return kwin->evaluate("options.edgeBarrier + \" \" + Boolean(options.cornerBarrier)") ==
               std::to_string(edge) + (corner ? " true" : " false");
    }
    bool isFreeSoon() {
        return waitUntil([&] { return isFree(); }, std::chrono::seconds(8));
    }
    support::Spot cursor() {
        const std::string text =
            kwin->evaluate("workspace.cursorPos.x + \" \" + workspace.cursorPos.y");
        support::Spot place{};
        std::istringstream(text) >> place.x >> place.y;
        return place;
    }
    /// Also where KWin's barrier lies between, which up to 6.3 shortens an absolute motion.
    void goTo(int x, int y) {
        ASSERT_TRUE(waitUntil([&] {
            hand->moveTo(x, y);
            const auto place = cursor();
            return place.x == x && place.y == y;
        }));
    }
    int monitorOfCursor() { return cursor().x / width; }
    bool cursorEndsOn(int monitor) {
        return waitUntil([&] { return monitorOfCursor() == monitor; });
    }

    /// How often the program was woken, up to now.
    long wakeups() const { return support::wakeups(program->pid()); }

    /// From now on it is noticed when the cursor is on the monitor, numbered from 0 on.
    Witness& witness(std::size_t monitor) {
        return *witnesses.emplace_back(std::make_unique<Witness>(
            kwin->socket(), monitor, Witness::Where::aboveEverything, clear));
    }

    std::optional<PrivateKWin> kwin;
    std::optional<KWinHand> hand;
    std::vector<std::unique_ptr<Witness>> witnesses;
    std::unique_ptr<support::ChildProcess> program;
};

} // namespace desktop
