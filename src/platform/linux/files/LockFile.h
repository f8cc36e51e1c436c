#pragma once

#include "platform/linux/files/FileHandle.h"

#include <optional>
#include <string>

namespace platform::linux {

/// The file whose lock makes the program with that name the only one on a display; nothing without
/// a folder for it.
std::optional<std::string> lockPath(const std::string& name, std::string display);

/// A lock between processes, held as long as the object lives, however the process ends. The file
/// stays. Who does not get the lock can knock; the holder notices that with a `FileWatch`.
class LockFile {
  public:
    enum class State { held, isElsewhere, impossible };

    /// Tries once. The file is made, for the user alone, in a folder that must be there.
    explicit LockFile(std::string path);

    State state() const { return found; }
    const std::string& path() const { return filePath; }

    /// Closes the file as one that has been written.
    void knock() const;

  private:
    std::string filePath;
    FileHandle file;
    State found = State::impossible;
};

} // namespace platform::linux
