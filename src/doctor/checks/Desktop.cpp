#include "app/Variants.h"
#include "doctor/checks/Checks.h"

#include <algorithm>

// What runs on the desktop beside the program.

namespace doctor::checks {

namespace {

std::string listOf(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

bool canDarkenByGamma(const Facts& facts) {
    return std::ranges::any_of(facts.server.ramps, &platform::x11::RampFacts::canBeSet);
}

/// How the user's own desktop is made to show icons.
std::string trayAdvice(const std::string& desktop) {
    const auto is = [&desktop](std::string_view name) {
        return desktop.find(name) != std::string::npos;
    };
    if (is("GNOME"))
        return "apt install gnome-shell-extension-appindicator, then switch it on in Extensions";
    if (is("XFCE")) return "add \"Status Tray Plugin\" to the panel (right click, Panel)";
    if (is("MATE")) return "add \"Notification Area\" to the panel (right click, Add to Panel)";
    if (is("LXQt"))
        return "add \"Status Notifier Plugin\" to the panel (right click, Manage Widgets)";
    if (is("KDE")) return "add \"System Tray\" to the panel (right click, Add Widgets)";
    return "add a tray to the panel, or: apt install trayer && trayer &";
}

} // namespace

Finding windowManager(const Facts& facts) {
    if (!facts.server.windowManager.empty())
        return {.key = "window-manager", .says = facts.server.windowManager};
    return {.key = "window-manager",
            .level = Level::note,
            .says = "none that can be asked (EWMH), so the keyboard is not given back to the "
                    "window that had it",
            .mend = "apt install openbox && openbox &"};
}

Finding compositor(const Facts& facts) {
    if (facts.server.hasCompositor)
        return {.key = "compositor", .says = "one runs, so darkness is blended"};
    constexpr const char* advice =
        "switch on the compositor of the desktop, or: apt install picom && picom -b";
    const bool darkens = facts.product.variant == palisor::variants::barrier;
    if (!darkens)
        return {.key = "compositor", .level = Level::note, .says = "none runs", .mend = advice};
    return {.key = "compositor",
            .level = Level::trouble,
            .says = canDarkenByGamma(facts)
                        ? "none runs, so monitors are darkened through their gamma and colours jump"
                        : "none runs and there is no gamma to set, so no monitor can be darkened",
            .mend = advice};
}

namespace {

/// Of a tray that is there, whether the running program has given it the icon.
Finding withIcon(const Facts& facts, std::string tray) {
    const auto* const told = toldCapability(facts, "tray");
    if (told == nullptr) return {.key = "tray", .says = std::move(tray)};
    if (told->available)
        return {.key = "tray", .says = tray + ", and has that of " + facts.product.title};
    return {.key = "tray",
            .level = Level::trouble,
            .says = tray + ", but " + facts.product.title + " has not found it",
            .mend = "end " + facts.product.title + " and start it again"};
}

} // namespace

Finding tray(const Facts& facts) {
    const std::string name = facts.server.tray.empty() ? "" : " (" + facts.server.tray + ")";
    if (facts.server.hasTray)
        return withIcon(facts, "a tray" + name + " takes the icon in as a window (XEMBED)");
    if (facts.bus.hasItemHost)
        return withIcon(facts, "a panel shows the icon as a status notifier item");
    if (facts.bus.itemWatcher.isThere)
        return {.key = "tray",
                .level = Level::trouble,
                .says = "status notifier items are watched for, but no panel shows them, so there "
                        "is no icon",
                .mend = trayAdvice(facts.desktop)};
    return {.key = "tray",
            .level = Level::trouble,
            .says = "no tray, so there is no icon; a second start shows the menu",
            .mend = trayAdvice(facts.desktop)};
}

Finding shortcut(const Facts& facts) {
    Finding finding{.key = "shortcut"};
    const std::string& name = facts.server.shortcut;
    const ProgramTells* const told = toldByProgram(facts);
    const auto* const its = toldCapability(facts, "shortcut");
    const bool isTaken = its != nullptr ? !its->available : facts.server.isShortcutTaken;
    if (!facts.settings.shortcut) {
        finding.says = "none is recorded, or it is switched off";
    } else if (name.empty()) {
        finding.says = "one is recorded, and could not be tried";
    } else if (facts.running.process && its == nullptr) {
        finding.says = name + ", not tried while " + facts.product.title + " runs";
    } else if (told != nullptr && !isTaken) {
        finding.says = name + (told->shortcut.empty() ? " is not claimed by " : " is held by ") +
                       facts.product.title;
    } else if (!isTaken) {
        finding.says = name + " is free for " + facts.product.title;
    } else {
        finding.level = Level::trouble;
        finding.says = name + " is held by another program";
        if (!facts.keyHolders.empty())
            finding.says += ", which the server does not tell; of those that hold keys there run " +
                            listOf(facts.keyHolders);
        finding.mend = "record another one (menu, \"Keyboard Shortcut...\"), or give it up there";
    }
    return finding;
}

Finding tools(const Facts& facts) {
    if (facts.tools.empty())
        return {.key = "other-programs", .says = "none that moves the cursor or changes colours"};
    return {.key = "other-programs",
            .level = Level::note,
            .says = "also at the cursor or the colours: " + listOf(facts.tools),
            .mend = "end it for a try if the cursor leaps or colours change by themselves"};
}

} // namespace doctor::checks
