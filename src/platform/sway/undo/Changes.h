#pragma once

#include "platform/session/GuardProcess.h"
#include "platform/sway/connection/Compositor.h"
#include "platform/sway/undo/UndoFile.h"

#include <set>

namespace platform::sway {

/// What the program changes in the compositor for as long as it runs. Each change is known to the
/// guard before it is made, and is made again when the user has the configuration read anew. Main
/// thread.
class Changes {
  public:
    struct Means {
        std::string guard;  ///< path of the helper executable
        std::string folder; ///< for the guard's file
        Descriptors& descriptors;
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
    /// What is to be run by the user's configuration as it is; nothing where that forbids it.
    using Wanted = std::function<std::optional<Change>()>;
    /// Makes a change in the place of an earlier one under the key. `wanted` is asked now and
    /// whenever the configuration has been read anew. False where nobody could take it back after a
    /// kill: it is not made then, which is logged once. Waits for nothing but the start of the
    /// guard, at the first change.
    bool make(const std::string& key, Wanted wanted);
    /// Takes it back; an unknown one is ignored. The guard knows of it until that is done.
    void takeBack(const std::string& key);

  private:
    struct Made {
        Wanted wanted;
        std::optional<Change> change; ///< what the compositor has
    };

    bool isGuarded();
    void repeat();

    Compositor& compositor;
    Descriptors& descriptors;
    Log& log;
    UndoFile file;
    session::GuardProcess guard;
    int watched = -1; ///< readable when the guard has ended
    std::map<std::string, Made> made;
    std::set<std::string> leaving; ///< keys of what the compositor has not taken back yet
    bool told = false;
};

} // namespace platform::sway
