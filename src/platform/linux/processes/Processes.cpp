#include "platform/linux/processes/Processes.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform::linux {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestName = 15; // of a process, as the kernel keeps it

fs::path folderOf(pid_t process) {
    return "/proc/" + std::to_string(process);
}

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isOfThisUser(const fs::path& folder) {
    struct stat status {};
    return ::stat(folder.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        entries.push_back(at->path());
    return entries;
}

std::vector<pid_t> ownProcesses() {
    std::vector<pid_t> processes;
    for (const fs::path& entry : entriesOf("/proc")) {
        const std::string name = entry.filename();
        pid_t process = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
        if (error != std::errc() || end != name.data() + name.size()) continue;
        if (isOfThisUser(entry)) processes.push_back(process);
    }
    return processes;
}

/// A lock belongs to an open file, and the kernel tells of it with that one's descriptors.
bool holds(pid_t process, const struct stat& lock) {
    const fs::path folder = folderOf(process);
    for (const fs::path& descriptor : entriesOf(folder / "fd")) {
        struct stat opened {};
        if (::stat(descriptor.c_str(), &opened) != 0 || opened.st_dev != lock.st_dev ||
            opened.st_ino != lock.st_ino)
            continue;
        if (contentOf(folder / "fdinfo" / descriptor.filename()).find("FLOCK") != std::string::npos)
            return true;
    }
    return false;
}

std::string displayOf(pid_t process) {
    constexpr std::string_view variable = "DISPLAY=";
    const std::string all = '\0' + contentOf(folderOf(process) / "environ");
    const auto found = all.find('\0' + std::string(variable));
    return found == std::string::npos ? std::string()
                                      : std::string(all.c_str() + found + 1 + variable.size());
}

} // namespace

std::optional<pid_t> holderOf(const std::string& lockFile) {
    struct stat lock {};
    if (::lstat(lockFile.c_str(), &lock) != 0 || !S_ISREG(lock.st_mode)) return std::nullopt;
    for (const pid_t process : ownProcesses())
        if (holds(process, lock)) return process;
    return std::nullopt;
}

std::vector<std::string>
runningOf(const std::vector<std::string>& names,
          const std::function<bool(const std::string& display)>& isDisplay) {
    std::vector<std::string> seen;
    for (const pid_t process : ownProcesses()) {
        std::string name = contentOf(folderOf(process) / "comm");
        if (name.ends_with('\n')) name.pop_back();
        if (isDisplay(displayOf(process))) seen.push_back(std::move(name));
    }
    std::vector<std::string> found;
    std::ranges::copy_if(names, std::back_inserter(found), [&seen](const std::string& name) {
        return std::ranges::find(seen, name.substr(0, longestName)) != seen.end();
    });
    return found;
}

// The owner is looked at when the handle is there: from then on it is that of the same process.
OtherProcess::OtherProcess(pid_t number)
    : process(number),
      handle(static_cast<int>(::syscall(SYS_pidfd_open, number, 0))),
      isOwn(handle && isOfThisUser(folderOf(number))) {}

std::string OtherProcess::executable() const {
    constexpr std::string_view gone = " (deleted)";
    std::error_code error;
    std::string path = fs::read_symlink(folderOf(process) / "exe", error);
    if (path.ends_with(gone)) path.resize(path.size() - gone.size());
    return fs::path(path).filename();
}

bool OtherProcess::isStopped() const {
    // Behind the name, which may have any character, and its closing bracket.
    const std::string status = contentOf(folderOf(process) / "stat");
    const auto bracket = status.rfind(')');
    if (bracket == std::string::npos || bracket + 2 >= status.size()) return false;
    return status[bracket + 2] == 'T' || status[bracket + 2] == 't';
}

bool OtherProcess::signal(int number) const {
    return isOwn && ::syscall(SYS_pidfd_send_signal, handle.get(), number, nullptr, 0) == 0;
}

bool OtherProcess::endsWithin(std::chrono::milliseconds limit) const {
    pollfd end{handle.get(), POLLIN, 0};
    return ::poll(&end, 1, static_cast<int>(limit.count())) == 1;
}

} // namespace platform::linux
