#include "platform/memory/Files.h"

namespace platform::memory {

namespace {

std::string folderOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return {};
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

bool Files::exists(const std::string& path) const {
    if (files.contains(path) || folders.contains(path)) return true;
    if (!folder || !settings.isSaved()) return false;
    return path == *folder + "/" + bundle.identifier() + ".plist";
}

bool Files::makeFolder(const std::string& path) {
    for (std::string at = path; !at.empty() && folders.insert(at).second; at = folderOf(at))
        if (files.contains(at)) return folders.erase(at) == 0;
    return !path.empty();
}

bool Files::write(const std::string& path, std::string_view bytes) {
    if (!folders.contains(folderOf(path)) || folders.contains(path)) return false;
    files.insert_or_assign(path, std::string(bytes));
    return true;
}

std::optional<std::string> Files::contents(const std::string& path) const {
    const auto found = files.find(path);
    return found == files.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> Files::inHome(const std::string& name) const {
    return home ? std::optional(*home + "/" + name) : std::nullopt;
}

} // namespace platform::memory
