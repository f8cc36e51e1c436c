#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/LoginHelper.h"
#include "app/Variants.h"

// Starting at login.

namespace palisor {

using platform::Value;

void AppDelegate::setHelperAppBundleIdentifier() {
    helperAppBundleIdentifier =
        services.bundle.identifier() + std::string(loginHelper::identifierEnding);
}

/// The desktop switcher is in the session's own list besides.
void AppDelegate::autoLogin(bool on) {
    if (IDApp() == variants::desktopSwitcher && services.loginItems.hasSessionList()) {
        if (on)
            enableLoginItem();
        else
            disableLoginItem();
    }
    services.loginItems.setEnabled(helperAppBundleIdentifier, on);
}

void AppDelegate::enableLoginItem() {
    services.loginItems.insertLast(services.bundle.path());
}

/// Takes out whatever lies at or inside the product's own place, duplicates too.
void AppDelegate::disableLoginItem() {
    for (const auto& item : services.loginItems.sessionList())
        if (item.path && item.path->starts_with(services.bundle.path()))
            services.loginItems.remove(item);
}

void AppDelegate::killHelperIfActive() {
    for (const std::string& identifier : services.workspace.runningApplications()) {
        if (identifier != helperAppBundleIdentifier) continue;
        services.workspace.postDistributedNotification(std::string(loginHelper::terminate),
                                                       services.bundle.identifier());
        return;
    }
}

void AppDelegate::pressAvviaAlLogin() {
    const bool isOn = services.settings.boolForKey(keys::CHECK_1);
    presscheck(CheckBox{.tag = tags::startAtLogin, .state = isOn ? 0 : 1});
    updateMenuItems();
}

void AppDelegate::recommendAutologinOnAtFirstCloseInfo() {
    if (settingIsOne(keys::RECOMMENDAUTOLOGIN)) return;
    if (services.settings.stringForKey(keys::CHECK_1) != "0") return;
    const int answer = services.alerts.runModal(
        {.message = services.bundle.displayName(),
         .informative = services.bundle.localizedString("RECOMMEND_STARTATLOGIN"),
         .buttons = {services.bundle.localizedString("SI"),
                     services.bundle.localizedString("NO")}});
    alertDidEnd2(answer);
    setAndSynchronize(keys::RECOMMENDAUTOLOGIN, Value{"1"});
}

void AppDelegate::alertDidEnd2(int returnCode) {
    if (returnCode != platform::Alerts::defaultButton) return;
    butautologin.state = 1;
    autoLogin(true);
    setAndSynchronize(keys::CHECK_1, Value{"1"});
    updateMenuItems();
}

} // namespace palisor
