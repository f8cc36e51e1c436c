#include "gnome/GnomeSession.h"
#include "testing/eye/Picture.h"
#include "testing/gnome/ShellMonitors.h"

#include <filesystem>

// What the program shows in the shell, without a cut word and inside the monitor. With
// PICTURES=FOLDER pictures of it are left there, which are to be looked at:
//   PICTURES=/tmp build/bin/gnome_tests --gtest_filter='*GnomeLook*'

namespace desktop {
namespace {

struct Look {
    const char* name;
    const char* scheme;
    const char* accent; ///< before 47 nobody looks at it
    int scale;
};

void PrintTo(const Look& look, std::ostream* out) {
    *out << look.name;
}

class GnomeLook : public Gnome, public testing::WithParamInterface<Look> {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateShell::missing()) GTEST_SKIP() << *reason;
        const auto set = [](const std::string& setting) {
            return std::vector<std::string>{"sh", "-c",
                                            "gsettings set org.gnome." + setting + " || :"};
        };
        const auto& [name, scheme, accent, scale] = GetParam();
        const std::string size = scale == 2 ? "2560x1440" : "1280x720";
        begin({.monitors = {size, size},
               .before = {set(std::string("desktop.interface color-scheme ") + scheme),
                          set(std::string("desktop.interface accent-color ") + accent),
                          set("mutter experimental-features \"['scale-monitor-framebuffer']\"")}});
        if (scale == 2)
            support::arrange(*shell, {{.outputs = {0}, .scale = 2.0},
                                      {.outputs = {1}, .x = 1280, .scale = 2.0}});
        // What the shell has to say of the session itself.
        shell->run("Main.messageTray.getSources().forEach(source => source.destroy())");
    }

    /// Whether one window is to be seen, and no longer on its way.
    bool showsWindow() const {
        return waitUntil([&] {
            return shell->isTrue("(() => { const all = global.get_window_actors().filter("
                                 "a => a.visible && a.width > 100);"
                                 "return all.length === 1 && all[0].scale_x === 1 && "
                                 "all[0].opacity === 255; })()");
        });
    }
    void expectItIsOnTheMonitor() const {
        EXPECT_TRUE(shell->isTrue(
            "(() => { const [{meta_window: w}] = global.get_window_actors().filter("
            "a => a.visible && a.width > 100);"
            "return w.get_work_area_current_monitor().contains_rect(w.get_frame_rect()); })()"));
    }

    /// Of the one window that is shown, by most of what is to be seen of it.
    bool windowIsDark() const {
        const std::filesystem::path file =
            std::filesystem::path(shell->configFolder()) / "window.png";
        shell->picture(file.string());
        const auto all = support::Picture::readPng(file);
        const std::string frame =
            shell->run("(() => { const [{meta_window: w}] = global.get_window_actors().filter("
                       "a => a.visible && a.width > 100); const r = w.get_frame_rect();"
                       "return [r.x, r.y, r.width, r.height]; })()");
        int x = 0, y = 0, width = 0, height = 0;
        if (std::sscanf(frame.c_str(), "[%d,%d,%d,%d]", &x, &y, &width, &height) != 4)
            throw std::runtime_error("no window: " + frame);
        const int scale = all.area.width / 2560;
        int dark = 0, seen = 0;
        for (int row = y + 1; row < y + height; row += 4)
            for (int column = x + 1; column < x + width; column += 4) {
                const auto& colour = all.at(column * scale, row * scale);
                dark += colour.red + colour.green + colour.blue < 3 * 128;
                ++seen;
            }
        return 2 * dark > seen;
    }
    void wish(const std::string& scheme) const {
        shell->run("new imports.gi.Gio.Settings({schema_id: 'org.gnome.desktop.interface'})"
                   ".set_string('color-scheme', '" +
                   scheme + "')");
    }

    /// Leaves a picture of what is to be seen now.
    void keep(const std::string& what) const {
        const char* const folder = std::getenv("PICTURES");
        if (!folder) return;
        shell->picture(std::string(folder) + "/gnome-" + GetParam().name + "-" + what + ".png");
    }

    /// `script` with the quick settings as `q`, the menu of the switch as `menu` and all that is
    /// in it as `all`.
    std::string inMenu(const std::string& title, const std::string& script) const {
        return shell->run(
            "(() => { const q = Main.panel.statusArea.quickSettings.menu;"
            "const menu = q._grid.get_children().find(c => (c.title ?? c.label) === '" +
            title +
            "')?.menu; const under = a => [a, ...a.get_children().flatMap(under)];"
            "const all = menu ? under(menu.actor) : []; " +
            script + "})()");
    }
    bool holdsInMenu(const std::string& title, const std::string& script) const {
        return waitUntil([&] { return inMenu(title, "return " + script + ";") == "true"; });
    }
    void openMenu(const std::string& title) const {
        ASSERT_TRUE(holdsInMenu(title, "menu !== undefined")) << program->errors();
        inMenu(title, "q.open(false); menu.open(false);");
        ASSERT_TRUE(holdsInMenu(title, quit)) << "the entries have come";
    }
    /// Unfolds what is below an entry.
    void unfold(const std::string& title, const std::string& entry) const {
        inMenu(title,
               "all.find(a => a.menu && a.label?.text === '" + entry + "').menu.open(false);");
        ASSERT_TRUE(holdsInMenu(title, "all.some(a => a.constructor.name.endsWith('Slider') && "
                                       "a.mapped && a.width > 100)"));
    }
    void expectItFits(const std::string& title) const {
        EXPECT_TRUE(holdsInMenu(title, inside)) << "the end of the menu is on the monitor";
        EXPECT_EQ(inMenu(title, "return all.filter(a => a.clutter_text && a.mapped && "
                                "a.clutter_text.get_layout().is_ellipsized()).map(a => a.text);"),
                  "[]");
        EXPECT_TRUE(holdsInMenu(title, beginBelowEachOther));
    }
    static constexpr const char* quit = "all.some(a => a.label?.text === 'Quit' && a.mapped)";
    /// The words of all entries, and the sliders; borders count for a pixel. What the shell has not
    /// placed yet is at no number.
    static constexpr const char* beginBelowEachOther =
        "(() => { const left = all.filter(a => a.mapped && "
        "(a.constructor.name.endsWith('Slider') || a.get_parent()?.label === a))"
        ".map(a => a.get_transformed_position()[0]);"
        "return left.length > 1 && Math.max(...left) - Math.min(...left) <= 2; })()";
    static constexpr const char* inside =
        "(() => { const scroll = all.find(a => a instanceof imports.gi.St.ScrollView && "
        "a.get_parent() === menu.box); "
        "return scroll.get_transformed_position()[1] + scroll.height < "
        "Main.layoutManager.primaryMonitor.height; })()";
};

TEST_P(GnomeLook, NoMenuOfASwitchHasACutWordOrGoesBeyondTheMonitor) {
    start({.pushOption = true, .more = {{"CTRLALTCMD", flag(true)}}});
    keep("veil");
    openMenu("Palisor");
    expectItFits("Palisor");
    keep("menu");
    for (const char* entry : {"Darken Other Monitors", "Push Hard to Cross"}) {
        unfold("Palisor", entry);
        expectItFits("Palisor");
    }
    keep("sliders");
}

TEST_P(GnomeLook, AnEntryThatOpensAWindowClosesTheQuickSettings) {
    start();
    openMenu("Palisor");
    inMenu("Palisor", "all.find(a => a.label?.text?.startsWith('Keyboard')).activate("
                      "imports.gi.Clutter.get_current_event?.());");
    EXPECT_TRUE(waitUntil(
        [&] { return shell->isTrue("!Main.panel.statusArea.quickSettings.menu.isOpen"); }));
    EXPECT_TRUE(showsWindow());
    expectItIsOnTheMonitor();
    keep("recorder");
}

TEST_P(GnomeLook, TheProgramsWindowsAreDarkWhereTheSessionIs) {
    start();
    openMenu("Palisor");
    inMenu("Palisor", "all.find(a => a.label?.text?.startsWith('Keyboard')).activate("
                      "imports.gi.Clutter.get_current_event?.());");
    ASSERT_TRUE(showsWindow());
    const bool isDark = std::string_view(GetParam().scheme) == "prefer-dark";
    EXPECT_TRUE(waitUntil([&] { return windowIsDark() == isDark; })) << program->errors();
    wish(isDark ? "prefer-light" : "prefer-dark");
    EXPECT_TRUE(waitUntil([&] { return windowIsDark() != isDark; })) << "and follows";
}

TEST_P(GnomeLook, TheInformationWindowAndTheQuestionAfterItAreOnTheMonitor) {
    launch({.more = {{"CHECK_0", text("0")}, {"CHECK_1", text("0")}, {"RECOMMENDAUTOLOGIN", ""}}});
    EXPECT_TRUE(showsWindow()) << program->errors();
    expectItIsOnTheMonitor();
    keep("info");
    shell->run("globalThis.first = global.get_window_actors().find(a => a.visible).meta_window;"
               "first.delete(global.get_current_time())");
    EXPECT_TRUE(waitUntil([&] {
        return shell->isTrue("global.get_window_actors().every(a => a.meta_window !== first)");
    }));
    EXPECT_TRUE(showsWindow()) << program->errors();
    expectItIsOnTheMonitor();
    keep("alert");
}

TEST_P(GnomeLook, WhatIsMissingIsSaidInANotification) {
    shell->run(std::string("Main.extensionManager.disableExtension('") + uuid + "')");
    ASSERT_TRUE(waitUntil([&] { return extensionIs(2); }));
    launch({});
    // As a banner, or in the list behind one that the user has not seen yet.
    EXPECT_TRUE(waitUntil([&] {
        return shell->isTrue("Main.messageTray.getSources().some(source => "
                             "source.notifications.some(said => (said.body ?? "
                             "said.bannerBodyText)?.includes('palisor setup gnome')))");
    })) << program->errors();
    keep("notification");
}

TEST_P(GnomeLook, TheLinesCrossBothMonitors) {
    start({.product = "crosshair"});
    shell->moveTo(300, 200);
    hand->relative(10, 20);
    EXPECT_TRUE(waitUntil([&] {
        const std::string lines = veils();
        return lines.find("[0,219,") != std::string::npos &&
               lines.find("[1280,219,") != std::string::npos && hasSwitch("Crosshair");
    })) << veils();
    keep("lines");
}

INSTANTIATE_TEST_SUITE_P(, GnomeLook,
                         testing::Values(Look{"light", "prefer-light", "blue", 1},
                                         Look{"dark", "prefer-dark", "orange", 1},
                                         Look{"fine", "prefer-light", "green", 2}),
                         [](const auto& one) { return one.param.name; });

} // namespace
} // namespace desktop
