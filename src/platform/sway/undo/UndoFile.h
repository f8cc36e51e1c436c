#pragma once

#include <map>
#include <string>
#include <vector>

namespace platform::sway {

/// What has to be run to take back what this process changed in the compositor, in a file for
/// whoever does it after a kill. It is locked for as long as the process lives.
class UndoFile {
  public:
    /// Nothing is written yet. An empty folder: nothing ever is.
    UndoFile(std::string folder, std::string compositorSocket);
    /// The file goes.
    ~UndoFile();
    UndoFile(const UndoFile&) = delete;
    UndoFile& operator=(const UndoFile&) = delete;

    const std::string& path() const { return filePath; }
    /// From now on the command is among those to be run, in the place of an earlier one under the
    /// key; an empty one is none. False where it could not be written.
    bool set(const std::string& key, const std::string& command);

  private:
    bool write();

    std::string filePath;
    std::string socket;
    std::map<std::string, std::string> commands;
    int file = -1; ///< has the lock
};

/// Runs what a file asks for, and removes it, once its owner has gone; `waits` for that, and does
/// nothing otherwise while the owner lives.
void undo(const std::string& file, bool waits);

/// The same for all files in the folder that other processes have left.
void undoLeft(const std::string& folder);

} // namespace platform::sway
