#include "doctor/checks/Checks.h"

#include <filesystem>

// The services of the session.

namespace doctor::checks {

Finding bus(const Facts& facts) {
    switch (facts.bus.state) {
    case BusFacts::State::answers:
        return {.key = "bus", .says = "the session bus answers"};
    case BusFacts::State::silent:
        return {.key = "bus",
                .level = Level::trouble,
                .says = "the session bus does not answer",
                .mend = "log out and in again"};
    case BusFacts::State::none:
        break;
    }
    return {.key = "bus",
            .level = Level::trouble,
            .says =
                "there is no session bus, so notices, panels and the start at login do not work",
            .mend = "apt install dbus-user-session and log in again, or start the session with "
                    "dbus-run-session"};
}

Finding notifications(const Facts& facts) {
    if (facts.bus.notifications.isThere)
        return {.key = "notifications", .says = "a service shows notices"};
    if (facts.bus.notifications.canStart)
        return {.key = "notifications",
                .says = "the service that shows notices starts when needed"};
    return {.key = "notifications",
            .level = Level::trouble,
            .says = "no service shows notices, so what goes wrong is told in the log alone",
            .mend = "apt install dunst (or xfce4-notifyd, mate-notification-daemon)"};
}

Finding portal(const Facts& facts) {
    constexpr const char* backends =
        "apt install xdg-desktop-portal with the backend of the desktop, as xdg-desktop-portal-gtk";
    if (facts.bus.portalHasSettings)
        return {.key = "portal", .says = "the portal tells light from dark"};
    if (facts.bus.portal.isThere)
        return {.key = "portal",
                .level = Level::note,
                .says = "the portal runs without settings, so the desktop's light and dark is not "
                        "followed",
                .mend = backends};
    if (facts.bus.portal.canStart) return {.key = "portal", .says = "it starts when it is needed"};
    return {.key = "portal",
            .level = Level::note,
            .says = "none, so the desktop's light and dark is not followed",
            .mend = backends};
}

Finding calendar(const Facts& facts) {
    if (!facts.hasCalendarModule)
        return {.key = "calendar",
                .level = Level::trouble,
                .says = "the calendar module is missing",
                .mend = "install the program anew"};
    std::error_code error;
    if (!facts.calendarFolder.empty()) {
        if (std::filesystem::is_directory(facts.calendarFolder, error))
            return {.key = "calendar", .says = "the folder " + facts.calendarFolder};
        return {.key = "calendar",
                .level = Level::trouble,
                .says = "the folder " + facts.calendarFolder + " is not there",
                .mend = "make it, or mend CalendarFolder in the product's Info.plist"};
    }
    if (facts.bus.calendar.isThere || facts.bus.calendar.canStart)
        return {.key = "calendar", .says = "Evolution Data Server"};
    return {.key = "calendar",
            .level = Level::trouble,
            .says = "no calendar server",
            .mend = "apt install evolution-data-server, then log in again"};
}

} // namespace doctor::checks
