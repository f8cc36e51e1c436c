#include "doctor/checks/Checks.h"

#include <algorithm>

// The program itself and its files.

namespace doctor::checks {

Finding program(const Facts& facts) {
    const auto& [process, isStopped] = facts.running;
    if (!process) return {.key = "program", .says = facts.product.title + " does not run"};
    const std::string which = " (process " + std::to_string(*process) + ")";
    // One that has the name is asked; another display's may have it.
    const bool isSilent = facts.bus.program == process && !facts.bus.programAnswers;
    if (isStopped || isSilent)
        return {.key = "program",
                .level = Level::trouble,
                .says = facts.product.title + " runs but does not answer",
                .mend = doctorCommand(facts.product, "--rescue"),
                .privately = which};
    return {.key = "program", .says = facts.product.title + " runs", .privately = which};
}

std::vector<Finding> losses(const Facts& facts) {
    // In a Wayland session nobody but the program can tell.
    constexpr std::string_view checkedOnX11[] = {"tray", "shortcut"};
    std::vector<Finding> findings;
    const ProgramTells* const told = toldByProgram(facts);
    if (told == nullptr) return findings;
    const bool isWayland = isWaylandSession(facts);
    for (const auto& [id, isAvailable, reason] : told->capabilities) {
        const bool isWell = isAvailable && (reason.empty() || !isWayland);
        if (isWell || (!isWayland && std::ranges::count(checkedOnX11, id) > 0)) continue;
        findings.push_back({.key = id,
                            .level = Level::note,
                            .says = reason.substr(0, reason.find_last_not_of('.') + 1)});
    }
    return findings;
}

Finding settings(const Facts& facts) {
    using File = SettingsFacts::File;
    const SettingsFacts& settings = facts.settings;
    const auto trouble = [](std::string says, std::string mend) {
        return Finding{.key = "settings",
                       .level = Level::trouble,
                       .says = std::move(says),
                       .mend = std::move(mend)};
    };
    if (settings.path.empty()) return trouble("there is no folder for settings", "set HOME");
    if (!settings.canWrite)
        return trouble(settings.path + " cannot be written: its folder is read-only or foreign",
                       "chown or chmod the folder, and look for a full or read-only disk");
    switch (settings.file) {
    case File::absent:
        return {.key = "settings", .says = settings.path + " is made at the first start"};
    case File::whole:
        return {.key = "settings", .says = settings.path + " is whole"};
    case File::repeatsKeys:
        return {.key = "settings",
                .level = Level::note,
                .says = settings.path + " has a key twice; the last one counts"};
    case File::blank:
        return trouble(settings.path + " is empty",
                       "bring it back from a copy; otherwise the next start sets it aside and "
                       "begins anew");
    case File::damaged:
        return trouble(settings.path + " is damaged: it is no whole property list",
                       "bring it back from a copy, or mend it (plutil, xmllint --noout); "
                       "otherwise the next start sets it aside and begins anew");
    case File::foreign:
        return trouble(settings.path + " is no file of settings", "move it away");
    case File::unreadable:
        break;
    }
    return trouble(settings.path + " cannot be read", "chmod u+rw, or chown, the file");
}

std::vector<Finding> autostart(const Facts& facts) {
    std::vector<Finding> findings;
    for (const auto& entry : facts.autostart) {
        if (entry.command.empty() && entry.isOff) continue;
        if (entry.isThere) {
            findings.push_back(
                {.key = "autostart",
                 .says = entry.path + (entry.isOff ? " is switched off" : " starts at login")});
            continue;
        }
        const std::string what = entry.command.empty() ? "nothing" : entry.command.front();
        findings.push_back({.key = "autostart",
                            .level = Level::trouble,
                            .says = entry.path + " starts " + what +
                                    (entry.command.empty() ? "" : ", which is not there"),
                            .mend = entry.isEdited ? "it is yours: mend its line Exec, or delete it"
                                                   : doctorCommand(facts.product, "--rescue")});
    }
    if (findings.empty()) findings.push_back({.key = "autostart", .says = "not started at login"});
    return findings;
}

Finding versions(const Facts& facts) {
    std::string says = facts.product.title + " " + facts.product.version;
    if (!facts.server.vendor.empty())
        says += ", X server " + facts.server.release + " (" + facts.server.vendor + ")";
    if (!facts.system.empty()) says += ", " + facts.system;
    return {.key = "versions", .says = std::move(says)};
}

} // namespace doctor::checks
