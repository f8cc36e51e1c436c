#pragma once

namespace platform {

/// The other applications of the session. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Gives the keyboard back to the application that the user was working in.
    virtual void activateFrontmostApplication() = 0;
};

} // namespace platform
