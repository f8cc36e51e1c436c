#include "platform/linux/settings/FileWatch.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/inotify.h>

namespace platform::linux {

FileWatch::FileWatch(const std::string& path, Descriptors& descriptorService, Log& log,
                     std::function<void()> onChange)
    : fileName(std::filesystem::path(path).filename()),
      descriptors(descriptorService),
      changed(std::move(onChange)),
      notices(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    const auto folder = std::filesystem::path(path).parent_path().string();
    if (!notices || ::inotify_add_watch(notices.get(), folder.c_str(),
                                        IN_CLOSE_WRITE | IN_MOVED_TO | IN_ONLYDIR) < 0) {
        log.write("edits of " + path +
                  " by other programs are not noticed: " + std::strerror(errno));
        notices = FileHandle();
        return;
    }
    descriptors.watchReadable(notices.get(), [this] { readEvents(); });
}

FileWatch::~FileWatch() {
    if (notices) descriptors.unwatch(notices.get());
}

void FileWatch::readEvents() {
    alignas(inotify_event) char block[4096];
    bool ours = false;
    for (;;) {
        const ssize_t length = ::read(notices.get(), block, sizeof block);
        if (length <= 0) break;
        for (ssize_t at = 0; at < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(block + at);
            ours = ours || (event->mask & IN_Q_OVERFLOW) != 0 ||
                   (event->len > 0 && fileName == event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    if (ours) changed();
}

} // namespace platform::linux
