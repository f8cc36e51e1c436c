#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "ui/TAMBERLO.h"
#include "util/Format.h"
#include "util/MacUtils.h"

// The help entries of the menu, and the ways to the maker: pages and mail. Every address is a value
// of the information dictionary.

namespace palisor {

void AppDelegate::addTAMBERLOItemsToHelpMenu(Menu& menu) const {
    struct Page {
        const char *title, *action;
        std::string_view address; ///< its key
    };
    for (const Page& page : {Page{"MAC_APP_STORE_PAGE", "openMacAppStorePage", "StoreWebPage"},
                             {"FACEBOOK_PAGE", "openFB", "SocialPage"},
                             {"SUPPORT", "openSupport", dictionary::makerSite}}) {
        MenuItem item = localizedItem(page.title, page.action);
        item.leadsNowhere =
            !services.workspace.leadsSomewhere(std::string(services.bundle.string(page.address)));
        menu.items.push_back(std::make_unique<MenuItem>(std::move(item)));
    }
}

void AppDelegate::openApp(MenuItem& item) {
    TAMBERLO::openApp(services, item);
}

void AppDelegate::openMacAppStorePage() {
    if (const auto id = variants::storeId(IDApp()); !id.empty())
        MacUtils::openStorePageWithID_osx(services, std::string(id), true);
}

void AppDelegate::openFB() {
    services.workspace.openURL(std::string(services.bundle.string("SocialPage")));
}

void AppDelegate::openSupport() {
    services.workspace.openURL(std::string(services.bundle.string(dictionary::makerSite)) +
                               "#contacts");
}

void AppDelegate::opentamberloosx() {
    services.workspace.openURL(std::string(services.bundle.string(dictionary::makerSite)));
}

void AppDelegate::openGenericMailToTamberlo() {
    const auto name = services.bundle.displayName();
    sendEmailTo_Subject_Body(services.bundle.string(dictionary::supportMail), name,
                             formatted(services.bundle.localizedString("MAIL_BOTTOM"), name));
}

void AppDelegate::sendEmailTo_Subject_Body(std::string_view recipient, std::string_view subject,
                                           std::string_view body) {
    MacUtils::sendEmailTo_Subject_Body(services, recipient, subject, body);
}

std::string AppDelegate::URLEncodedString(std::string_view text) const {
    return MacUtils::URLEncodedString(services, text);
}

} // namespace palisor
