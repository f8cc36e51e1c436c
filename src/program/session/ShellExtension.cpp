#include "program/session/ShellExtension.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::string variable(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

/// Where extensions for all users are, this one's folder in each.
std::vector<fs::path> foldersForAll() {
    std::vector<fs::path> found;
    std::string folders = variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    while (!folders.empty()) {
        const std::size_t end = folders.find(':');
        found.push_back(fs::path(folders.substr(0, end)) / extensionsFolder / shellExtension);
        folders.erase(0, end == std::string::npos ? end : end + 1);
    }
    return found;
}

} // namespace

fs::path userExtension() {
    const fs::path home = variable("HOME", "/");
    const fs::path data = variable("XDG_DATA_HOME", (home / ".local/share").string());
    return data / extensionsFolder / shellExtension;
}

bool isSeenByAll(const fs::path& extension) {
    const std::vector<fs::path> folders = foldersForAll();
    return std::ranges::find(folders, extension) != folders.end();
}

bool isExtensionInstalled() {
    std::vector<fs::path> folders = foldersForAll();
    folders.push_back(userExtension());
    return std::ranges::any_of(folders, [](const fs::path& folder) {
        std::error_code error;
        return fs::exists(folder, error);
    });
}
