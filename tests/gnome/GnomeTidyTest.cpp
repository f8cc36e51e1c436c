#include "gnome/GnomeSession.h"

#include <iterator>

namespace desktop {
namespace {

class GnomeTidy : public Gnome {
  protected:
    void disable() {
        shell->run(std::string("Main.extensionManager.disableExtension('") + uuid + "')");
        ASSERT_TRUE(waitUntil([&] { return extensionIs(2); }));
    }
    void enable() {
        shell->run(std::string("Main.extensionManager.enableExtension('") + uuid + "')");
        ASSERT_TRUE(waitUntil([&] { return extensionIs(1); })) << shell->log();
    }
};

/// A barrier that is pushed against, veils, a cursor that is hidden, a menu that is open.
TEST_F(GnomeTidy, DisabledTenTimesTheExtensionLeavesNothing) {
    start({.product = "vellumor", .more = {{"TIME_MODE", flag(true)}, {"SCHEDULE", number(1)}}});
    const auto sibling = std::move(program);
    start({.more = {{"CTRLALTCMD", flag(true)}}});
    // The actors, bindings and icons that the shell has.
    const std::string count =
        "(() => { const all = a => 1 + a.get_children().reduce((n, c) => n + all(c), 0);"
        "return [Main.layoutManager.uiGroup.get_children().length,"
        " all(Main.panel), all(Main.panel.statusArea.quickSettings.menu.actor),"
        " Main.panel.statusArea.quickSettings.menu._overlay.get_n_children(),"
        " Object.keys(Main.wm._allowedKeybindings).filter(k => "
        "k.startsWith('external-grab')).length,"
        " Main.layoutManager._trackedActors.length]; })()";
    // What the quick settings make when they are first opened.
    shell->run("Main.panel.statusArea.quickSettings.menu.open(false)");
    disable();
    shell->run("Main.panel.statusArea.quickSettings.menu.close(false)");
    const std::string before = shell->run(count);
    std::ifstream script(LEDGER);
    shell->run({std::istreambuf_iterator<char>(script), {}});
    for (int time = 0; time < 10; ++time) {
        enable();
        ASSERT_TRUE(waitUntil([&] { return veils() == otherIsDark; }))
            << "time " << time << ": " << veils() << program->errors() << shell->log();
        ASSERT_TRUE(waitUntil([&] { return hasSwitch("Palisor") && hasSwitch("Vellumor"); }));
        shell->run("(() => { const {menu} = Main.panel.statusArea.quickSettings; menu.open(false);"
                   "menu._grid.get_children().find(c => (c.title ?? c.label) === 'Palisor')"
                   ".menu.open(false); })()");
        hand->push(20, 0, 20, mouseRate);
        EXPECT_NE(shell->run("ledger.left()"), "{}");
        disable();
        // The quick settings are the shell's own, and still open.
        shell->run("Main.panel.statusArea.quickSettings.menu.close(false)");
        EXPECT_EQ(shell->run("ledger.left()"), "{}") << "time " << time;
        EXPECT_EQ(veils(), noneIsDark);
    }
    EXPECT_EQ(shell->run("ledger.made()"),
              R"(["barrier","object on the bus","own name","shortcut","signal","source",)"
              R"("subscription","watch of idleness","watched name"])")
        << "what the account is kept of";
    EXPECT_EQ(shell->run(count), before);
    hand->push(20, 0, 100, mouseRate);
    EXPECT_GE(shell->cursor().x, 1280);
}

} // namespace
} // namespace desktop
