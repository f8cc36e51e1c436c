#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::sway {

/// What is to be run in a compositor to take changes back.
struct Undoing {
    std::string socket; ///< the compositor's
    std::vector<std::string> commands;
    bool operator==(const Undoing&) const = default;
};

/// A line each. A command that takes back nothing of what the program changes is left out on both
/// ways.
std::string toText(const Undoing& undoing);
Undoing undoingFrom(std::string_view text);

/// What has to be run to take back what this process changed in the compositor, in a file for
/// whoever does it after a kill. It is locked for as long as the process lives.
class UndoFile {
  public:
    /// Nothing is written yet. An empty folder: nothing ever is.
    UndoFile(std::string folder, std::string compositorSocket);
    /// As `remove`.
    ~UndoFile() { remove(); }
    UndoFile(const UndoFile&) = delete;
    UndoFile& operator=(const UndoFile&) = delete;

    const std::string& path() const { return filePath; }
    /// From now on the command is among those to be run, in the place of an earlier one under the
    /// key; an empty one is none. False where it could not be written.
    bool set(const std::string& key, const std::string& command);

    /// The file goes.
    void remove();
    /// The file stays as it is, for another process. Nothing can be set after either of them.
    void leave();

  private:
    bool write();

    std::string filePath;
    std::string socket;
    std::map<std::string, std::string> commands;
    int file = -1; ///< has the lock
};

/// How it went with a file that somebody left.
enum class Undone {
    nothing,  ///< there is none, or its owner lives
    outlived, ///< its compositor has gone, and so has the file
    done,     ///< it was run, and has gone
    silent,   ///< the compositor does not answer, and the file is still there
};

/// Runs what a file asks for once its owner has gone, waiting for that and for a compositor that
/// does not answer.
Undone undoWhenLeft(const std::string& file);

/// The same for all files in the folder whose owners have gone, and the last of the answers above;
/// waits for two seconds at most for each compositor.
Undone undoLeft(const std::string& folder);

} // namespace platform::sway
