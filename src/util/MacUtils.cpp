#include "util/MacUtils.h"

#include "app/Keys.h"

namespace palisor {

void MacUtils::fixDefaultsIfNeeded(const platform::Platform& services) {
    auto& settings = services.settings;
    settings.set(keys::qwe, platform::Value{"qwe"});
    settings.synchronize();
    settings.flush(); // the file is looked for next

    if (const auto folder = services.files.preferencesFolder()) {
        const std::string path =
            *folder + "/" + std::string(services.bundle.string("CFBundleIdentifier")) + ".plist";
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

} // namespace palisor
