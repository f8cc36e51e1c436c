#include "app/AppDelegate.h"
#include "util/Format.h"
#include "util/MacUtils.h"

// The ways to the maker: pages and mail. Every address is a value of the information dictionary.

namespace palisor {

void AppDelegate::opentamberloosx() {
    services.workspace.openURL(std::string(services.bundle.string("MakerSite")));
}

void AppDelegate::openGenericMailToTamberlo() {
    const auto name = services.bundle.string("CFBundleDisplayName");
    sendEmailTo_Subject_Body(services.bundle.string("SupportMail"), name,
                             formatted(services.bundle.localizedString("MAIL_BOTTOM"), name));
}

void AppDelegate::sendEmailTo_Subject_Body(std::string_view recipient, std::string_view subject,
                                           std::string_view body) {
    MacUtils::sendEmailTo_Subject_Body(services, recipient, subject, body);
}

} // namespace palisor
