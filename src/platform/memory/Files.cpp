#include "platform/memory/Files.h"

namespace platform::memory {

bool Files::exists(const std::string& path) const {
    if (made.contains(path)) return true;
    if (!folder || !settings.isSaved()) return false;
    return path == *folder + "/" + std::string(bundle.string("CFBundleIdentifier")) + ".plist";
}

} // namespace platform::memory
