#include "platform/linux/XdgFiles.h"

#include "platform/linux/FileHandle.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform::linux {

std::optional<std::string> configurationFolder() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && folder[0] == '/') return folder;
    const char* home = std::getenv("HOME");
    if (home == nullptr || home[0] == '\0') return std::nullopt;
    return std::string(home) + "/.config";
}

std::optional<std::string> XdgFiles::preferencesFolder() const {
    return configurationFolder();
}

bool XdgFiles::exists(const std::string& path) const {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

void XdgFiles::createEmpty(const std::string& path) {
    const FileHandle file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) log.write("cannot make the file " + path + ": " + std::strerror(errno));
}

} // namespace platform::linux
