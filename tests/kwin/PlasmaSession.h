#pragma once

#include "kwin/KWinSession.h"
#include "testing/sway/PrivateSway.h"

#include <filesystem>

// The program beside Plasma's own shell, on a KWin whose monitors are windows of a headless sway:
// that takes the pictures, which KWin does not give of what it draws by software.

namespace desktop {

using support::Picture;
using support::PrivateSway;

class ShownKWin : public KWin {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateKWin::missing()) GTEST_SKIP() << *reason;
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
    }
    void TearDown() override {
        // Before the windows of what runs in it have gone.
        program.reset();
        shell.reset();
        witnesses.clear();
        hand.reset();
        kwin.reset();
    }
    void beginShown(PrivateKWin::Options options = {}) {
        screen.emplace(PrivateSway::Options{.layout = "1280x720+0+0,1280x720+1280+0",
                                            .configuration = "default_border none\n"
                                                             "workspace 1 output HEADLESS-1\n"
                                                             "workspace 2 output HEADLESS-2\n" +
                                                             moved("WL-0", 1) + moved("WL-1", 2)});
        options.shownIn = screen->socket();
        begin(options);
    }
    static std::string moved(const std::string& window, int workspace) {
        return "for_window [title=\"" + window + "\"] move container to workspace " +
               std::to_string(workspace) + "\n";
    }

    /// Of a monitor, numbered from 0 on.
    Picture picture(int monitor = 0) const { return screen->picture(monitor + 1); }
    /// The same when nothing moves there any more, or after a while.
    Picture atRest(int monitor = 0) const {
        Picture last = picture(monitor);
        int same = 0;
        (void)waitUntil([&] {
            Picture now = picture(monitor);
            same = now.pixels == last.pixels ? same + 1 : 0;
            last = std::move(now);
            return same == 4;
        });
        return last;
    }
    /// In PALISOR_PICTURES, of both monitors.
    void keep(const std::string& name) const {
        const char* const folder = std::getenv("PALISOR_PICTURES");
        if (!folder) return;
        for (const int monitor : {0, 1})
            atRest(monitor).writePng(std::string(folder) + "/" + name + "-" +
                                     std::to_string(monitor + 1) + ".png");
    }

    std::optional<PrivateSway> screen;
    std::unique_ptr<support::ChildProcess> shell;
};

class Plasma : public ShownKWin {
  protected:
    void SetUp() override {
        ShownKWin::SetUp();
        for (const char* command : {"plasmashell", "plasma-apply-colorscheme"})
            if (!std::filesystem::exists(std::string("/usr/bin/") + command))
                GTEST_SKIP() << command << " is not installed";
    }
    void beginPlasma(bool dark) {
        beginShown({.more = {{"XDG_MENU_PREFIX", "plasma-"},
                             {"XDG_CURRENT_DESKTOP", "KDE"},
                             {"KDE_FULL_SESSION", "true"},
                             {"KDE_SESSION_VERSION", "6"}}});
        // What the bus starts is to find the compositor.
        ASSERT_EQ(kwin->spawn("dbus-update-activation-environment", {"--all"})->wait(), 0);
        const auto scheme =
            kwin->spawn("plasma-apply-colorscheme", {dark ? "BreezeDark" : "BreezeLight"});
        ASSERT_EQ(scheme->wait(), 0) << scheme->errors();
        shell = kwin->spawn("plasmashell", {"--no-respawn"});
        ASSERT_TRUE(waitUntil([&] { return hasTray(); }, std::chrono::seconds(40)))
            << shell->errors();
    }
    bool hasTray() const {
        return ask({"get-property", "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                    "org.kde.StatusNotifierWatcher", "IsStatusNotifierHostRegistered"}) ==
               "b true\n";
    }
    /// What busctl prints; nothing where it fails.
    std::string ask(const std::vector<std::string>& words) const {
        std::vector<std::string> whole{"--user"};
        whole.insert(whole.end(), words.begin(), words.end());
        const auto asked = kwin->spawn("busctl", whole);
        return asked->wait() == 0 ? asked->output() : "";
    }
    std::string item() const {
        return "org.kde.StatusNotifierItem-" + std::to_string(program->pid()) + "-1";
    }
    std::string toolTip() const {
        return ask({"get-property", item(), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                    "ToolTip"});
    }
    std::string exportedMenu() const {
        return ask({"call", "--", item(), "/Menu", "com.canonical.dbusmenu", "GetLayout", "iias",
                    "0", "-1", "0"});
    }
    void tell(const std::string& command) const {
        const auto client = kwin->spawn(programs() + "/palisor", {command});
        EXPECT_EQ(client->wait(), 0) << client->errors();
    }
    bool isOn() const {
        const auto status = kwin->spawn(programs() + "/palisor", {"status"});
        status->wait();
        return status->output().starts_with("active yes");
    }
    bool isOnSoon(bool on) const {
        return waitUntil([&] { return isOn() == on; });
    }

    /// What is different in two pictures of the first monitor, within that area.
    static std::optional<Area> difference(const Picture& one, const Picture& other,
                                          const Area& within) {
        int left = within.x + within.width, right = -1, top = within.y + within.height, bottom = -1;
        for (int y = within.y; y < within.y + within.height; ++y)
            for (int x = within.x; x < within.x + within.width; ++x)
                if (one.at(x, y) != other.at(x, y)) {
                    left = std::min(left, x);
                    right = std::max(right, x + 1);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y + 1);
                }
        if (right < left) return {};
        return Area{left, top, right - left, bottom - top};
    }
    static constexpr int panelTop = 660;
    static constexpr Area trayEnd{800, panelTop, width - 800, 60},
        abovePanel{0, 0, width, panelTop};
};

} // namespace desktop
