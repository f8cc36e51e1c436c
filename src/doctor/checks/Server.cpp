#include "app/Variants.h"
#include "doctor/checks/Checks.h"
#include "program/session/ShellExtension.h"

#include <algorithm>
#include <string_view>
#include <utility>

// The session, its X server and the monitors.

namespace doctor::checks {

namespace {

using platform::Rect;

constexpr const char* logIn = "log out, and choose \"... on Xorg\" or another X11 session on the "
                              "login screen";

std::string sizeOf(const Rect& area) {
    const auto whole = [](double number) { return std::to_string(static_cast<long>(number)); };
    const auto place = [&](double number) { return (number < 0 ? "" : "+") + whole(number); };
    return whole(area.width) + "x" + whole(area.height) + place(area.x) + place(area.y);
}

std::string listOf(const std::vector<platform::x11::MonitorFacts>& monitors) {
    std::string list;
    for (const auto& monitor : monitors)
        list += (list.empty() ? "" : ", ") + monitor.name + " " + sizeOf(monitor.area) +
                (monitor.primary ? " primary" : "");
    return list;
}

std::string count(std::size_t number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

/// How to put the monitors, or two with such names, side by side.
std::string sideBySide(const std::vector<platform::x11::MonitorFacts>& monitors) {
    if (monitors.size() < 2)
        return "connect a second monitor and switch it on: xrandr --output NAME --auto "
               "--right-of " +
               (monitors.empty() ? "OTHER" : monitors.front().name);
    return "put them side by side: xrandr --output " + monitors[1].name + " --auto --right-of " +
           monitors[0].name;
}

/// What does not work without the extensions that a server may lack.
std::string lossesOf(const platform::x11::ServerFacts& server) {
    constexpr std::pair<std::string_view, std::string_view> uses[] = {
        {"SYNC", "moves of the cursor that no device makes are seen later"},
        {"XKEYBOARD", "shortcuts are labelled as on a U.S. keyboard"},
        {"XTEST", "desktops are not switched where no window manager does it"},
        {"MIT-SCREEN-SAVER", "the screen saver cannot be held off"},
        {"Composite", "no compositor can run"}};
    std::string losses;
    const auto add = [&losses](const std::string& what) {
        losses += (losses.empty() ? "" : "; ") + what;
    };
    if (server.refusal.empty() && !server.holdsCursor)
        add("before XInput 2.3 the cursor is put back after it has left, and not held");
    for (const auto& [name, loss] : uses) {
        const auto found =
            std::ranges::find(server.extensions, name, &platform::x11::ExtensionFacts::name);
        if (found != server.extensions.end() && found->version.empty())
            add("without " + found->name + " " + std::string(loss));
    }
    return losses;
}

/// What the program says when it refuses goes on with what to do.
Finding refusedSession(const std::string& refusal) {
    const std::string reason = refusal.substr(0, refusal.find(';'));
    return {.key = "session", .level = Level::trouble, .says = reason, .mend = logIn};
}

Finding waylandSession(const WaylandFacts& wayland) {
    if (!wayland.isJoined) return refusedSession(wayland.refusal);
    return {.key = "session",
            .level = Level::ok,
            .says =
                "Wayland" +
                (wayland.compositor.empty() ? "" : ", the compositor is " + wayland.compositor)};
}

/// What a Wayland session's outputs say; how they are put is the compositor's own matter.
Finding waylandMonitors(const Facts& facts) {
    const auto& screens = facts.wayland.screens;
    std::string list;
    for (const auto& screen : screens)
        list += (list.empty() ? "" : ", ") + screen.name + " " +
                std::to_string(static_cast<long>(screen.frame.width)) + "x" +
                std::to_string(static_cast<long>(screen.frame.height));
    Finding finding{.key = "monitors", .says = count(screens.size(), "monitor") + ": " + list};
    if (screens.size() >= 2 || facts.product.variant != palisor::variants::barrier) return finding;
    finding.level = Level::trouble;
    finding.says = "one monitor only (" + list + "), and " + facts.product.title + " needs two";
    finding.mend = "connect a second monitor and switch it on in the desktop's settings";
    return finding;
}

/// Everything there goes through the extension of the shell.
Finding gnomeSession(const Facts& facts) {
    const auto trouble = [](std::string says, std::string mend) {
        return Finding{.key = "session",
                       .level = Level::trouble,
                       .says = std::move(says),
                       .mend = std::move(mend)};
    };
    const std::string installs = std::string(shellSetup) + ", then log out and in again";
    switch (facts.bus.shellExtension) {
    case ShellExtension::notInstalled:
        return trouble("GNOME Shell does not have the extension that holds the cursor", installs);
    case ShellExtension::notSeenYet:
        return trouble("the extension that holds the cursor is installed, and GNOME Shell looks "
                       "for new ones only at login",
                       "log out and in again");
    case ShellExtension::off:
        return trouble("the extension of GNOME Shell that holds the cursor is switched off",
                       shellSetup);
    case ShellExtension::failed:
        return trouble("the extension of GNOME Shell that holds the cursor has failed", installs);
    case ShellExtension::otherRelease:
        return trouble("the extension that holds the cursor is installed for another release of "
                       "GNOME Shell",
                       installs);
    case ShellExtension::noShell:
    case ShellExtension::on:
        break;
    }
    return {
        .key = "session", .level = Level::ok, .says = "Wayland, with the extension in GNOME Shell"};
}

} // namespace

Finding session(const Facts& facts) {
    const bool isWayland = !facts.waylandDisplay.empty() || facts.sessionType == "wayland";
    if (!facts.waylandDisplay.empty() && facts.bus.shellExtension != ShellExtension::noShell)
        return gnomeSession(facts);
    if (!facts.waylandDisplay.empty() && !facts.compositorAnswers)
        return {.key = "session",
                .level = Level::trouble,
                .says = "the compositor does not answer",
                .mend = "log out and in again"};
    if (isWaylandSession(facts) || !facts.wayland.refusal.empty())
        return waylandSession(facts.wayland);
    if (facts.display.empty() && isWayland)
        return {.key = "session",
                .level = Level::trouble,
                .says = "this is a Wayland session without an X11 display",
                .mend = logIn};
    if (facts.display.empty())
        return {.key = "session",
                .level = Level::trouble,
                .says = "no X11 display is named here",
                .mend = "run this in a terminal of the desktop, or set DISPLAY"};
    if (!facts.serverAnswers)
        return {.key = "session",
                .level = Level::trouble,
                .says = "the X server does not answer",
                .mend = "log out and in again"};
    if (!facts.server.isReached)
        return {.key = "session",
                .level = Level::trouble,
                .says = "there is no X server at the display, or it lets this user not in",
                .mend = isWayland ? logIn : "run this as the user who is logged in there"};
    if (!isX11Session(facts)) return refusedSession(facts.server.refusal);
    return {.key = "session",
            .level = Level::ok,
            .says = "X11" + (facts.desktop.empty() ? "" : ", the desktop is " + facts.desktop)};
}

Finding extensions(const Facts& facts) {
    Finding finding{.key = "extensions"};
    std::string missing, all;
    for (const auto& extension : facts.server.extensions) {
        const std::string needed = extension.name + " " + extension.needed;
        if (!extension.needed.empty() && !extension.suffices)
            missing += (missing.empty() ? "" : ", ") + needed;
        if (!extension.version.empty())
            all += (all.empty() ? "" : ", ") + extension.name + " " + extension.version;
    }
    finding.says = all;
    if (const std::string losses = lossesOf(facts.server); !losses.empty()) {
        finding.level = Level::note;
        finding.says += "; " + losses;
    }
    if (missing.empty()) return finding;
    finding.level = Level::trouble;
    finding.says = "the X server lacks " + missing;
    finding.mend = "switch it on in the server's options and configuration (\"-extension\", the "
                   "section \"Extensions\"), or install xserver-xorg-core";
    return finding;
}

Finding monitors(const Facts& facts) {
    if (isWaylandSession(facts)) return waylandMonitors(facts);
    const auto& listed = facts.server.monitors;
    // A server that the program refuses is told by what it lists.
    const std::size_t counted =
        facts.server.refusal.empty() ? facts.server.screens.size() : listed.size();
    Finding finding{.key = "monitors"};
    finding.says = count(counted, "monitor") + ": " + listOf(listed);
    if (counted < listed.size())
        finding.says = "mirrored or overlapping ones count as one, which makes " + finding.says;
    const bool needsTwo = facts.product.variant == palisor::variants::barrier;
    if (counted >= 2 || !needsTwo) return finding;
    finding.level = Level::trouble;
    finding.mend = sideBySide(listed);
    if (listed.size() < 2)
        finding.says =
            "one monitor only (" + listOf(listed) + "), and " + facts.product.title + " needs two";
    return finding;
}

// Where a compositor runs the program does not touch them.
Finding colours(const Facts& facts) {
    Finding finding{.key = "colours"};
    std::string changed;
    bool canBeSet = false;
    for (const auto& ramp : facts.server.ramps) {
        canBeSet = canBeSet || ramp.canBeSet;
        if (ramp.canBeSet && !ramp.isPlain) changed += (changed.empty() ? "" : ", ") + ramp.output;
    }
    if (facts.server.leftDark) {
        finding.level = Level::trouble;
        finding.says = "a program that has gone left a monitor dark";
        finding.mend = doctorCommand(facts.product, "--rescue");
    } else if (!canBeSet) {
        finding.says = "the gamma of the monitors cannot be set here";
    } else if (changed.empty()) {
        finding.says = "the gamma of the monitors is plain";
    } else {
        finding.level = Level::note;
        finding.says = "the gamma of " + changed +
                       " is not plain: a night light, a colour profile "
                       "or another program has set it, which is heeded";
    }
    return finding;
}

} // namespace doctor::checks
