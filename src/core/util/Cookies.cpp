#include "util/MacUtils.h"

#include "app/Keys.h"

#include <algorithm>

// Cookies in the settings: an archive is one line a cookie.

namespace palisor {

using platform::Cookie;
using platform::Data;

void MacUtils::saveCookies(const platform::Platform& services) {
    saveCookies(services, std::string(keys::cookies));
}

void MacUtils::saveCookies(const platform::Platform& services, const std::string& key) {
    services.web.cookies([&settings = services.settings, key](const std::vector<Cookie>& cookies) {
        Data archive;
        for (const Cookie& cookie : cookies) {
            archive.insert(archive.end(), cookie.begin(), cookie.end());
            archive.push_back('\n');
        }
        settings.set(key, platform::Value{std::move(archive)});
        settings.synchronize();
    });
}

void MacUtils::loadCookies(const platform::Platform& services) {
    loadCookies(services, std::string(keys::cookies));
}

void MacUtils::loadCookies(const platform::Platform& services, const std::string& key) {
    const auto* value = services.settings.object(key);
    const auto* archive = value == nullptr ? nullptr : std::get_if<Data>(&value->held);
    if (archive == nullptr) return;
    // A line without an end was cut off.
    for (auto start = archive->begin();;) {
        const auto end = std::find(start, archive->end(), '\n');
        if (end == archive->end()) return;
        if (start != end) services.web.setCookie(Cookie(start, end));
        start = end + 1;
    }
}

void MacUtils::clearCacheWK(const platform::Platform& services) {
    services.web.removeAllData();
}

} // namespace palisor
