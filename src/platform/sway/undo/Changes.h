#pragma once

#include "platform/session/GuardProcess.h"
#include "platform/sway/connection/Compositor.h"
#include "platform/sway/undo/UndoFile.h"

namespace platform::sway {

/// What the program changes in the compositor for as long as it runs. Each change is known to the
/// guard before it is made, and is made again when the user has the configuration read anew. Main
/// thread.
class Changes {
  public:
    struct Means {
        std::string guard;  ///< path of the helper executable
        std::string folder; ///< for the guard's file
    };
    Changes(Compositor& compositor, const Means& means, Log& log);
    /// Everything is taken back.
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    struct Change {
        std::string command;
        std::string undo;
    };
    /// Makes a change in the place of an earlier one under the key. False where nobody could take
    /// it back after a kill: it is not made then, which is logged once. Waits for nothing but the
    /// start of the guard, at the first change.
    bool make(const std::string& key, const Change& change);
    /// Takes it back; an unknown one is ignored.
    void takeBack(const std::string& key);

  private:
    bool isGuarded();
    void repeat();

    Compositor& compositor;
    Log& log;
    UndoFile file;
    session::GuardProcess guard;
    std::map<std::string, Change> made;
    bool told = false;
};

} // namespace platform::sway
