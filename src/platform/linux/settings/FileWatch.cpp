#include "platform/linux/settings/FileWatch.h"

#include "platform/linux/files/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/inotify.h>

namespace platform::linux {

namespace {

using Path = std::filesystem::path;

// A folder tells of its own end, and of its files; those above it only of theirs, so that nothing
// wakes the program for what happens in a home folder.
constexpr std::uint32_t ownEnd = IN_MOVE_SELF | IN_DELETE_SELF;
constexpr std::uint32_t files =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE;
constexpr std::uint32_t folderEnded = ownEnd | IN_IGNORED | IN_UNMOUNT;

} // namespace

FileWatch::FileWatch(std::string file, Descriptors& descriptorService, Log& logger,
                     std::function<void()> onChange)
    : path(std::move(file)),
      descriptors(descriptorService),
      log(logger),
      changed(std::move(onChange)) {
    if (Path(path).is_absolute()) watch();
}

FileWatch::~FileWatch() {
    stop();
}

void FileWatch::stop() {
    if (notices) descriptors.unwatch(notices.get());
    notices = FileHandle();
}

void FileWatch::watch() {
    stop();
    names.clear();
    allThere = true;
    places = linksFollowed(path);
    notices = FileHandle(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    bool works = static_cast<bool>(notices);
    for (const std::string& place : places)
        works = works && watchPlace(place);
    if (works) {
        descriptors.watchReadable(notices.get(), [this] { readEvents(); });
        return;
    }
    log.write("edits of " + path + " by other programs are not noticed: " + std::strerror(errno));
    notices = FileHandle();
}

/// Watches the file's folder, or the nearest one above it that is there. False, and errno, where
/// that is not possible.
bool FileWatch::watchPlace(const std::string& place) {
    Path folder = Path(place).parent_path();
    std::string name = Path(place).filename();
    // Those above come first: what goes meanwhile is told of.
    for (Path above = folder; above.has_relative_path();) {
        above = above.parent_path();
        if (!add(above, ownEnd, {}) && errno != ENOENT && errno != ENOTDIR) return false;
    }
    while (!add(folder, ownEnd | files, name)) {
        if ((errno != ENOENT && errno != ENOTDIR) || !folder.has_relative_path()) return false;
        allThere = false;
        name = folder.filename();
        folder = folder.parent_path();
    }
    // It may have come since it was looked for.
    const std::string missing = folder / name;
    return missing == place || !std::filesystem::is_directory(missing) || watchPlace(place);
}

bool FileWatch::add(const std::string& folder, std::uint32_t what, const std::string& name) {
    const int watch =
        ::inotify_add_watch(notices.get(), folder.c_str(), what | IN_ONLYDIR | IN_MASK_ADD);
    if (watch < 0) return false;
    names[watch].insert(name);
    return true;
}

void FileWatch::readEvents() {
    alignas(inotify_event) char block[4096];
    bool ours = false;
    bool folderIsGone = false;
    for (;;) {
        const ssize_t length = ::read(notices.get(), block, sizeof block);
        if (length <= 0) break;
        for (ssize_t at = 0; at < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(block + at);
            folderIsGone = folderIsGone || (event->mask & folderEnded) != 0;
            ours = ours || (event->mask & IN_Q_OVERFLOW) != 0 ||
                   (event->len > 0 && names[event->wd].contains(event->name));
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    if (!ours && !folderIsGone) return;
    if (folderIsGone || !allThere || places != linksFollowed(path)) watch();
    changed();
}

} // namespace platform::linux
