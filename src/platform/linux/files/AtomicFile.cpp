#include "platform/linux/files/AtomicFile.h"

#include "platform/linux/files/FileHandle.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::linux {

namespace {

constexpr mode_t onlyTheUser = S_IRUSR | S_IWUSR;
constexpr off_t longest = off_t{16} * 1024 * 1024;
constexpr int mostAside = 10000;
constexpr std::size_t mostLinks = 40; // as the kernel has it

FileIdentity identityFrom(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec};
}

/// Returns 0 or an error.
int writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

std::optional<int> readAll(int fd, std::string& text) {
    char block[8192];
    for (;;) {
        const ssize_t length = ::read(fd, block, sizeof block);
        if (length < 0 && errno == EINTR) continue;
        if (length < 0) return errno;
        if (length == 0) return std::nullopt;
        text.append(block, static_cast<std::size_t>(length));
    }
}

/// The file to write into. A kill may have left one behind, so the name is taken over; the lock
/// keeps a second process of the same user from writing into it at the same time.
FileHandle openTemporary(const std::string& path, FileReplaced& result) {
    std::optional<FileFailure>& failure = result.failure;
    FileHandle file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                           onlyTheUser));
    struct stat opened {};
    struct stat named {};
    if (!file || ::fstat(file.get(), &opened) != 0) {
        failure = {"making the new file", errno};
    } else if (!S_ISREG(opened.st_mode)) {
        failure = {"making the new file", EEXIST};
    } else if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        failure = {"locking the new file", errno};
        result.isLocked = errno == EWOULDBLOCK;
    } else if (::stat(path.c_str(), &named) != 0 || named.st_ino != opened.st_ino) {
        failure = {"locking the new file", EAGAIN}; // the other process has just renamed it
        result.isLocked = true;
    } else if (::ftruncate(file.get(), 0) != 0 || ::fchmod(file.get(), onlyTheUser) != 0) {
        failure = {"making the new file", errno};
    }
    return file;
}

void syncFolderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path().string();
    const FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot sync a folder; the file itself is safe then as well.
    if (handle) (void)::fsync(handle.get());
}

template <class Place>
std::optional<std::string> placeAside(const std::string& path, Place&& place) {
    for (int number = 1; number <= mostAside; ++number) {
        const std::string name =
            path + ".damaged" + (number == 1 ? std::string{} : "-" + std::to_string(number));
        if (place(name)) return name;
        if (errno != EEXIST) return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return identityFrom(status);
}

std::vector<std::string> linksFollowed(const std::string& path) {
    std::vector<std::string> places{path};
    std::error_code isNoLink;
    while (places.size() <= mostLinks) {
        const std::filesystem::path place(places.back());
        const auto target = std::filesystem::read_symlink(place, isNoLink);
        if (isNoLink) break;
        places.push_back((place.parent_path() / target).string());
    }
    return places;
}

FileRead readFile(const std::string& path) {
    FileRead result;
    const auto failed = [&result](int error) {
        result.state = FileRead::State::failed;
        result.error = error;
        return result;
    };
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) return errno == ENOENT ? result : failed(errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) return failed(errno);
    result.identity = identityFrom(status);
    if (!S_ISREG(status.st_mode) || status.st_size > longest) {
        result.state = FileRead::State::foreign;
        return result;
    }
    if (const auto error = readAll(file.get(), result.text)) return failed(*error);
    result.state = FileRead::State::read;
    return result;
}

namespace {

FileReplaced replaceWhere(const std::string& path, std::string_view text,
                          const std::function<bool()>& isAsExpected) {
    FileReplaced result;
    const std::string temporary = path + ".new";
    const FileHandle file = openTemporary(temporary, result);
    if (result.failure) return result;
    struct stat status {};
    if (const int error = writeAll(file.get(), text))
        result.failure = {"writing", error};
    else if (::fsync(file.get()) != 0 || ::fstat(file.get(), &status) != 0)
        result.failure = {"syncing", errno};
    else if (result.isEdited = !isAsExpected(); result.isEdited)
        result.failure = {"replacing the old file", EBUSY};
    else if (::rename(temporary.c_str(), path.c_str()) != 0)
        result.failure = {"replacing the old file", errno};
    if (result.failure) {
        (void)::unlink(temporary.c_str());
        return result;
    }
    result.identity = identityFrom(status);
    syncFolderOf(path);
    return result;
}

} // namespace

FileReplaced replaceFile(const std::string& path, std::string_view text) {
    return replaceWhere(path, text, [] { return true; });
}

FileReplaced replaceFile(const std::string& path, std::string_view text,
                         const std::optional<FileIdentity>& before) {
    return replaceWhere(path, text, [&] { return identityOf(path) == before; });
}

int makeFolders(const std::string& folder) {
    if (folder.empty() || ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) return 0;
    if (errno != ENOENT) return errno;
    const auto above = std::filesystem::path(folder).parent_path().string();
    if (above == folder) return ENOENT;
    if (const int error = makeFolders(above)) return error;
    return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST ? 0 : errno;
}

std::optional<std::string> moveAside(const std::string& path) {
    return placeAside(path, [&path](const std::string& name) {
        const auto here = AT_FDCWD;
        if (::renameat2(here, path.c_str(), here, name.c_str(), RENAME_NOREPLACE) == 0) return true;
        if (errno != EINVAL) return false;
        // A file system without the exclusive rename.
        if (identityOf(name)) {
            errno = EEXIST;
            return false;
        }
        return ::rename(path.c_str(), name.c_str()) == 0;
    });
}

std::optional<std::string> copyAside(const std::string& path, std::string_view text) {
    return placeAside(path, [text](const std::string& name) {
        const FileHandle file(
            ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, onlyTheUser));
        if (!file) return false;
        const int error = writeAll(file.get(), text);
        if (error == 0 && ::fsync(file.get()) == 0) return true;
        (void)::unlink(name.c_str());
        errno = error == 0 || error == EEXIST ? EIO : error;
        return false;
    });
}

namespace {

/// Tries names beside the path until `place` succeeds with one, or fails because of anything but a
/// name that is taken. They are hidden, since programs look at the files of such a folder.
template <class Place>
bool placeUnderANewName(const std::string& path, Place&& place) {
    const std::filesystem::path file(path);
    const std::string stem = "." + file.filename().string() + "." + std::to_string(::getpid());
    for (int number = 1; number <= mostAside; ++number) {
        if (place((file.parent_path() / (stem + "-" + std::to_string(number))).string()))
            return true;
        if (errno != EEXIST) return false;
    }
    return false;
}

/// A kill leaves nothing of a file without a name. `name` stays empty, but on a file system that
/// has no such files.
FileHandle openUnnamed(const std::string& path, std::string& name) {
    const auto folder = std::filesystem::path(path).parent_path().string();
    FileHandle file(::open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, onlyTheUser));
    if (file || (errno != EOPNOTSUPP && errno != EISDIR)) return file;
    placeUnderANewName(path, [&](const std::string& free) {
        file =
            FileHandle(::open(free.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, onlyTheUser));
        if (file) name = free;
        return static_cast<bool>(file);
    });
    return file;
}

bool giveName(const FileHandle& file, const std::string& path, std::string& name) {
    const std::string opened = "/proc/self/fd/" + std::to_string(file.get());
    return placeUnderANewName(path, [&](const std::string& free) {
        const auto here = AT_FDCWD;
        if (::linkat(here, opened.c_str(), here, free.c_str(), AT_SYMLINK_FOLLOW) != 0)
            return false;
        name = free;
        return true;
    });
}

} // namespace

FileReplaced replaceFileOfOthers(const std::string& path, std::string_view text) {
    FileReplaced result;
    std::string name;
    const FileHandle file = openUnnamed(path, name);
    struct stat status {};
    if (!file)
        result.failure = {"making the new file", errno};
    else if (const int error = writeAll(file.get(), text))
        result.failure = {"writing", error};
    else if (::fsync(file.get()) != 0 || ::fstat(file.get(), &status) != 0)
        result.failure = {"syncing", errno};
    else if (name.empty() && !giveName(file, path, name))
        result.failure = {"naming the new file", errno};
    else if (::rename(name.c_str(), path.c_str()) != 0)
        result.failure = {"replacing the old file", errno};
    if (result.failure) {
        if (!name.empty()) (void)::unlink(name.c_str());
        return result;
    }
    result.identity = identityFrom(status);
    syncFolderOf(path);
    return result;
}

} // namespace platform::linux
