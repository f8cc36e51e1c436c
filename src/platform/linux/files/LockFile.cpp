#include "platform/linux/files/LockFile.h"

#include "platform/linux/files/XdgFiles.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace platform::linux {

std::optional<std::string> lockPath(const std::string& name, std::string display) {
    const auto folder = runtimeFolder();
    if (!folder) return std::nullopt;
    std::ranges::replace(display, '/', '_');
    return *folder + "/" + name + display + ".lock";
}

// It is opened for reading: a try that failed would otherwise be a knock when it is closed.
LockFile::LockFile(std::string path)
    : filePath(std::move(path)),
      file(::open(filePath.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                  S_IRUSR | S_IWUSR)) {
    if (!file) return;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        found = State::held;
    else if (errno == EWOULDBLOCK)
        found = State::isElsewhere;
}

void LockFile::knock() const {
    const FileHandle knocker(
        ::open(filePath.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}

} // namespace platform::linux
