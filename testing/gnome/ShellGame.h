#pragma once

#include "testing/gnome/PrivateShell.h"

#include <memory>

namespace support {

/// A game in a private shell: a full-screen window on the monitor that the shell chooses, which
/// may keep the pointer for itself. It has gone when the object has. One thread.
class ShellGame {
  public:
    enum class Takes { nothing, locks, confines };

    /// Returns when it is shown, and has the pointer where it takes it, for which the cursor must
    /// be over the monitor. Throws std::runtime_error where it does not come to that.
    ShellGame(const PrivateShell& shell, Takes takes);
    ~ShellGame();
    ShellGame(const ShellGame&) = delete;
    ShellGame& operator=(const ShellGame&) = delete;

    /// Whether the pointer is its own now.
    bool hasPointer();

  private:
    struct Parts;
    const PrivateShell& shell;
    std::unique_ptr<Parts> parts;
};

} // namespace support
