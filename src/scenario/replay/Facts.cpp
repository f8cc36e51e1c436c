#include "scenario/replay/Facts.h"

#include "strings/Strings.h"

namespace palisor::replay {

void setUp(platform::memory::MemoryPlatform& platform) {
    using platform::Value;
    auto& bundle = platform.bundle;
    bundle.set("IDApp", Value{std::int64_t{8}});
    bundle.set("CFBundleShortVersionString", Value{"1.0"});
    bundle.set("CFBundleDisplayName", Value{"Palisor"});
    bundle.set("CFBundleIdentifier", Value{"com.tamberlo.palisor"});
    bundle.set("MakerHost", Value{"service.tamberlo.invalid"});
    bundle.set("MakerSite", Value{"https://www.tamberlo.invalid"});
    bundle.set("SocialPage", Value{"https://social.tamberlo.invalid/tamberlo"});
    bundle.set("StoreWebPage", Value{"https://store.tamberlo.invalid/app/%@"});
    bundle.set("StorePage", Value{"store://store.tamberlo.invalid/app/%@?mt=12"});
    bundle.set("MobileStorePage", Value{"mobilestore://store.tamberlo.invalid/app/%@"});
    bundle.set("SupportMail", Value{"support@tamberlo.invalid"});
    bundle.setLanguages({"en"});
    bundle.setStrings(strings::lookUp);

    platform.system.setVersion({10, 15, 7});
    platform.displays.replace({{0, 0, 1920, 1080}, {1920, 0, 1920, 1080}});
    storeShortcut(platform, Shortcut{40, 1310720});
}

void storeShortcut(platform::memory::MemoryPlatform& platform,
                   const std::optional<Shortcut>& shortcut) {
    platform.settings.edit("customShortcut",
                           shortcut ? std::optional(shortcut->toValue()) : std::nullopt);
}

} // namespace palisor::replay
