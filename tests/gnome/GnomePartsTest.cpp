#include "gnome/GnomeSession.h"

namespace desktop {
namespace {

/// What a newer shell may have changed.
struct Lack {
    const char* name;
    const char* script;            ///< takes it out of a shell that has it
    std::vector<std::string> lost; ///< the capabilities that go with it
};

void PrintTo(const Lack& lack, std::ostream* out) {
    *out << lack.name;
}

class GnomeParts : public Gnome, public testing::WithParamInterface<Lack> {
  protected:
    /// A shell that has not looked at the extension yet.
    void SetUp() override {
        if (const auto reason = PrivateShell::missing()) GTEST_SKIP() << *reason;
        PrivateShell::Options options;
        options.before = {
            {programs() + "/palisor", "setup", "gnome"},
            {"gsettings", "set", "org.gnome.shell", "disable-user-extensions", "true"}};
        shell.emplace(options);
        hand.emplace(*shell);
        hand->relative(1, 0);
        shell->moveTo(640, 300);
    }
    void enable() {
        shell->run("global.settings.set_boolean('disable-user-extensions', false)");
        ASSERT_TRUE(waitUntil([&] { return extensionIs(1); })) << shell->log();
    }
    bool isLost(const char* capability) const {
        const auto& lost = GetParam().lost;
        return std::find(lost.begin(), lost.end(), capability) != lost.end();
    }
};

TEST_P(GnomeParts, AShellWithoutOneKeepsTheOthers) {
    shell->run(std::string("(() => { const {Clutter, GObject, Meta} = imports.gi;") +
               GetParam().script + "})()");
    enable();
    launch({.pushOption = true, .velocity = 50});
    const auto says = [&](const char* capability) {
        return std::string("can ") + capability + ": " + (isLost(capability) ? "no" : "yes");
    };
    for (const char* each : {"hold", "push", "darkness", "motion", "modifiers", "tray"})
        EXPECT_TRUE(
            waitUntil([&] { return command({"status"}).find(says(each)) != std::string::npos; },
                      std::chrono::seconds(5)))
            << says(each) << "\n"
            << command({"status"});
    EXPECT_EQ(waitUntil([&] { return hasSwitch("Palisor"); }, std::chrono::seconds(1)),
              !isLost("tray"));

    if (!isLost("darkness")) {
        EXPECT_TRUE(waitUntil([&] { return othersAreDark(); }));
    }
    shell->moveTo(1250, 300);
    hand->push(1, 0, 100, 125);
    EXPECT_EQ(shell->cursor().x == 1279, !isLost("hold")) << shell->cursor().x;
    if (isLost("hold")) return;
    hand->push(300, 0, 40, mouseRate);
    const auto hasCrossed = [&] { return shell->cursor().x >= 1280; };
    EXPECT_EQ(waitUntil(hasCrossed, std::chrono::seconds(1)), !isLost("push"));
}

INSTANTIATE_TEST_SUITE_P(
    , GnomeParts,
    testing::Values(
        Lack{"Nothing", "", {}}, Lack{"Hold", "Meta.Barrier = undefined;", {"hold", "push"}},
        Lack{"Push",
             "const {connect} = Meta.Barrier.prototype;"
             "Meta.Barrier.prototype.connect = function (signal, ...rest) {"
             "  if (signal === 'hit') throw new Error('No signal');"
             "  return connect.call(this, signal, ...rest); };"
             "const {signal_lookup: real} = GObject;"
             "GObject.signal_lookup = (name, ...rest) => name === 'hit' ? 0 : real(name, ...rest);",
             {"push"}},
        Lack{"Veil", "Main.layoutManager.addTopChrome = undefined;", {"darkness"}},
        Lack{"Cursor", "Clutter.Seat.prototype.inhibit_unfocus = undefined;", {"hide"}},
        Lack{"Watch",
             "Meta.Backend.prototype.get_cursor_tracker = undefined;"
             "Meta.CursorTracker.get_for_display = undefined;",
             {"motion", "modifiers", "hide"}},
        Lack{"Keys", "Meta.Display.prototype.grab_accelerator = undefined;", {"shortcut"}},
        Lack{"Toggle",
             "const {quickSettings} = Main.panel.statusArea;"
             "quickSettings.addExternalIndicator = quickSettings._addItems = undefined;",
             {"tray"}}),
    [](const auto& one) { return one.param.name; });

} // namespace
} // namespace desktop
