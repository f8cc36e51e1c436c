#include "util/MacUtils.h"

#include "app/Keys.h"
#include "util/Format.h"

#include <algorithm>
#include <array>

namespace palisor {

namespace {

// White space and line ends of Unicode.
constexpr std::array<std::string_view, 27> blanks{
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00a0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200a", "\u200b", "\u2028", "\u2029", "\u202f", "\u205f", "\u3000", "\u180e"};

bool isBlank(std::string_view text) {
    while (!text.empty()) {
        const auto first = std::ranges::find_if(
            blanks, [text](std::string_view blank) { return text.starts_with(blank); });
        if (first == blanks.end()) return false;
        text.remove_prefix(first->size());
    }
    return true;
}

} // namespace

void MacUtils::fixDefaultsIfNeeded(const platform::Platform& services) {
    auto& settings = services.settings;
    settings.set(keys::qwe, platform::Value{"qwe"});
    settings.synchronize();
    settings.flush(); // the file is looked for next

    if (const auto folder = services.files.preferencesFolder()) {
        const std::string path = *folder + "/" + services.bundle.identifier() + ".plist";
        if (!services.files.exists(path)) {
            services.files.createEmpty(path);
            settings.resetStandardUserDefaults();
            settings.synchronize();
            services.log.write("FIX for PREFERENCES but need restart --> exit(0)");
            settings.remove(keys::qwe);
            settings.synchronize();
            services.application.exit(0);
        }
    }
    settings.remove(keys::qwe);
    settings.synchronize();
}

void MacUtils::deleteAllSavedUserDefaults(const platform::Platform& services) {
    services.settings.setPersistentDomain({});
}

bool MacUtils::isValidInfo(std::string_view text) {
    return text != "NULL" && text != "(null)" && !isBlank(text);
}

std::string MacUtils::URLEncodedString(const platform::Platform& services, std::string_view text) {
    return services.textCodec.percentEncoded(text, " °éèàìòù[]@%'\"?&+><;:-$,#*£");
}

void MacUtils::openStorePageWithID_osx(const platform::Platform& services,
                                       const std::string& stringID, bool osx) {
    services.log.write("stringID: " + stringID + " osx: " + (osx ? "1" : "0"));
    // A desktop without a program of the store's own has no address for it.
    for (const auto page : {"StoreWebPage", osx ? "StorePage" : "MobileStorePage"})
        if (const auto address = services.bundle.string(page); !address.empty())
            services.workspace.openURL(formatted(std::string(address), std::string_view(stringID)));
}

void MacUtils::sendEmailTo_Subject_Body(const platform::Platform& services,
                                        std::string_view recipient, std::string_view subject,
                                        std::string_view body) {
    services.workspace.openURL("mailto:" + std::string(recipient) +
                               "?Subject=" + URLEncodedString(services, subject) +
                               "&body=" + URLEncodedString(services, body));
}

} // namespace palisor
