#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// Reading and replacing small files so that nothing is ever lost half-way. Errors are errno
// numbers.

namespace platform::linux {

/// Tells one state of a file from another without opening it.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// Nothing when there is no such file.
std::optional<FileIdentity> identityOf(const std::string& path);

/// The path, and where each link in turn leads to. The last one is the file, whether or not it is
/// there.
std::vector<std::string> linksFollowed(const std::string& path);

struct FileRead {
    enum class State { absent, read, foreign, failed };
    State state = State::absent; ///< foreign: not a regular file, or far too long for one of ours
    std::string text;
    FileIdentity identity;
    int error = 0; ///< with `failed`
};

FileRead readFile(const std::string& path);

/// What went wrong, and at which step.
struct FileFailure {
    std::string_view step;
    int error = 0;
};

struct FileReplaced {
    std::optional<FileFailure> failure; ///< then the file is what it was
    bool isLocked = false;              ///< with a failure: another process is writing a new file
    bool isEdited = false;              ///< with a failure: the file is not the one expected
    FileIdentity identity;              ///< of the new file
};

/// Writes "<path>.new" beside the file, syncs it and renames it over the file; mode 0600. Whatever
/// instant the process is killed at, the file is whole: the old one or the new one.
FileReplaced replaceFile(const std::string& path, std::string_view text);

/// The same if the file is still what it was `before`, absent for nothing. That is looked at last,
/// so that only an edit in the instant of the rename itself is overwritten.
FileReplaced replaceFile(const std::string& path, std::string_view text,
                         const std::optional<FileIdentity>& before);

/// Makes the folder and those above it, for the user only. Returns 0 or an error.
int makeFolders(const std::string& folder);

/// Renames the file to "<path>.damaged", or with a number behind where that is taken. Returns the
/// new name; nothing, and errno, when it cannot be renamed.
std::optional<std::string> moveAside(const std::string& path);

/// The same with a copy of the file.
std::optional<std::string> copyAside(const std::string& path, std::string_view text);

/// What `replaceFile` does, for a folder of somebody else's, where "<path>.new" may be a file like
/// any other: the new file has no name until it is whole, and then one that nobody has.
FileReplaced replaceFileOfOthers(const std::string& path, std::string_view text);

} // namespace platform::linux
