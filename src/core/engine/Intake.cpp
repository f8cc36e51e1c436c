#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// Where the session's events come in. Two mechanisms exist and `start` installs one of them; both
// only listen, and both sort events into modifier changes and pointer events.

namespace palisor {

using platform::EventType;
using platform::InputEvent;

namespace {

// Mouse buttons, moves and drags, modifier changes, scrolling and tablets.
constexpr platform::EventMask wantedEvents = 0xfc010fe;

platform::TapParameters tapParameters(int variant) {
    using namespace platform;
    // These three act before anything else sees the event; the others come after everybody.
    if (variant == variants::desktopSwitcher || variant == variants::wrapAround ||
        variant == variants::barrier)
        return {TapLocation::hid, TapPlacement::headInsert, TapOptions::listenOnly, allEvents};
    return {TapLocation::session, TapPlacement::tailAppend, TapOptions::listenOnly, wantedEvents};
}

} // namespace

void AppDelegate::installEventIntake() {
    if (services.system.servicesVersion() < platform::firstWithGlobalMonitor) {
        createMouseEvent();
        return;
    }
    services.log.write("macOS 10.14 or high");
    services.input.addGlobalMonitor(
        wantedEvents, [this](const InputEvent& event) { globalMonitorHandler(event); });
}

void AppDelegate::createMouseEvent() {
    services.input.addTap(tapParameters(IDApp()),
                          [this](const InputEvent& event) { eventTapCallback(event); });
    services.runLoop.run();
}

void AppDelegate::eventTapCallback(const InputEvent& event) {
    if (event.type == EventType::flagsChanged)
        Appoggio::onKeyPressed(event.keyCode);
    else if (wantsPointerEvent(event.type))
        Appoggio::onMouseMovedOrClicked(event.location);
}

void AppDelegate::globalMonitorHandler(const InputEvent& event) {
    if (event.type == EventType::flagsChanged)
        Appoggio::onKeyPressed(event.keyCode);
    else if (wantsPointerEvent(event.type))
        Appoggio::onMouseMovedOrClicked(getCurrentMouseLocation());
}

bool AppDelegate::wantsPointerEvent(EventType type) const {
    return IDApp() != variants::cursorHider || type != EventType::scrollWheel ||
           services.settings.boolForKey(keys::SHOW_ON_SCROLL);
}

void Appoggio::onMouseMovedOrClicked(Point location) {
    if (AppDelegate* delegate = AppDelegate::shared()) delegate->onMouseMovedOrClicked(location);
}

void Appoggio::onKeyPressed(std::uint16_t keyCode) {
    if (AppDelegate* delegate = AppDelegate::shared()) delegate->onKeyPressed(keyCode);
}

Point AppDelegate::getCurrentMouseLocation() {
    return services.pointer.location();
}

} // namespace palisor
