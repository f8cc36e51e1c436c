#include "app/AppDelegate.h"

namespace palisor {

AppDelegate* AppDelegate::sharedInstance = nullptr;

AppDelegate::AppDelegate(const platform::Platform& platformServices) : services(platformServices) {
    windowInfo = services.infoWindows.create(*this);
    sharedInstance = this;
}

AppDelegate::~AppDelegate() {
    sharedInstance = nullptr;
}

bool AppDelegate::settingIsOne(std::string_view key) const {
    return services.settings.stringForKey(key) == "1";
}

void AppDelegate::setAndSynchronize(std::string_view key, platform::Value value) {
    services.settings.set(key, std::move(value));
    services.settings.synchronize();
}

} // namespace palisor
