#pragma once

#include "platform/HotKeys.h"

#include <functional>
#include <string>
#include <vector>

namespace platform::layershell {

/// Whoever hears keys for the program, wherever the focus is: each compositor's own way, if it has
/// one. All goes when the program dies. Main thread.
class Bindings {
  public:
    struct Binding {
        Shortcut shortcut;
        std::function<void()> pressed; ///< called from the run loop
        bool isChosen = false;         ///< by the user, and not one that is always the same
    };

    virtual ~Bindings() = default;

    /// From now on these are heard and no others. Does not wait.
    virtual void hear(const std::vector<Binding>& wanted) = 0;

    /// `held` is called from the run loop when Control, Alt and Super have come to be held
    /// together, the last of them being the left one. For the object's life. Who cannot tell never
    /// calls it.
    virtual void hearHeldModifiers(std::function<void()> held) = 0;
};

} // namespace platform::layershell
