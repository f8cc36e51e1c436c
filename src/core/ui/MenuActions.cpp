#include "app/Keys.h"
#include "app/Operations.h"
#include "app/Variants.h"

// What the entries and check boxes of the status menu do.

namespace palisor {

using platform::Value;

namespace {

constexpr double reopenDelay = 0.01; // the menu that was just clicked closes first

} // namespace

void AppDelegate::chosen(MenuItem& item) {
    sendAction(*this, item.action, item);
}

void AppDelegate::moved(Slider& slider) {
    sendAction(*this, slider.action, slider);
}

void AppDelegate::clicked(CheckBox& box) {
    sendAction(*this, box.action, box);
}

void AppDelegate::toggleSetting(std::string_view key) {
    setAndSynchronize(key, Value{!services.settings.boolForKey(key)});
    updateMenuItems();
}

/// The mode just switched on has a submenu that the user is expected to use at once.
void AppDelegate::reopenMenu() {
    schedule<&AppDelegate::openMenu>(reopenDelay, false, "openMenu");
}

void AppDelegate::pressTimeMode() {
    invalidate(timerSchedule);
    showcursor();
    toggleSetting(keys::TIME_MODE);
    if (services.settings.boolForKey(keys::TIME_MODE)) reopenMenu();
}

void AppDelegate::pressHotBorders() {
    invalidate(timerSchedule);
    showcursor();
    const bool wasOn = services.settings.integerForKey(keys::HOT_BOUNDS) != 0;
    setAndSynchronize(keys::HOT_BOUNDS, Value{wasOn ? "0" : "1"});
    updateMenuItems();
    if (services.settings.integerForKey(keys::HOT_BOUNDS) != 0) reopenMenu();
}

void AppDelegate::pressVelocity() {
    toggleSetting(keys::VELOCITY_OPTION);
    if (services.settings.boolForKey(keys::VELOCITY_OPTION)) reopenMenu();
}

void AppDelegate::pressShowOnScroll() {
    toggleSetting(keys::SHOW_ON_SCROLL);
}

void AppDelegate::storeFlippedState(MenuItem& item, std::string_view key) {
    item.state = item.state == 0 ? 1 : 0;
    setAndSynchronize(key, Value{item.state != 0});
    updateMenuItems();
}

void AppDelegate::CTRLALTCMDDidChanged(MenuItem& item) {
    storeFlippedState(item, keys::CTRLALTCMD);
}

void AppDelegate::freezeCursorAfterSwitch(MenuItem& item) {
    storeFlippedState(item, keys::BREAK_AFTER_SWITCH);
}

/// The user must have a way to show the cursor again before it is hidden for good.
void AppDelegate::stayHiddenDidChanged(MenuItem& item) {
    if (!hasUsableShortcut() && !services.settings.boolForKey(keys::STAY_HIDDEN)) {
        showStayHiddenWarning();
        showShortcutPopup();
        return;
    }
    const bool on = item.state == 0;
    storeFlippedState(item, keys::STAY_HIDDEN);
    if (on && isActive())
        hidecursor();
    else
        showcursor();
}

void AppDelegate::presscheck(const CheckBox& box) {
    setAndSynchronize("CHECK_" + std::to_string(box.tag), Value{std::to_string(box.state)});
    if (box.tag == tags::startAtLogin) autoLogin(box.state != 0);
}

void AppDelegate::valueChange(const CheckBox& box) {
    const std::string key = box.tag >= tags::side ? "BUTLATO" + std::to_string(box.tag - tags::side)
                                                  : "BUTANGOLO" + std::to_string(box.tag);
    setAndSynchronize(key, Value{box.state != 0});
    tellWhatIsWatched();
}

void AppDelegate::showStayHiddenWarning() {
    services.application.activateIgnoringOtherApps();
    services.alerts.runModal(
        {.message = services.bundle.localizedString("STAY_HIDDEN_WARNING_TITLE"),
         .informative = services.bundle.localizedString("STAY_HIDDEN_WARNING_TEXT"),
         .buttons = {services.bundle.localizedString("OK")}});
}

} // namespace palisor
