#pragma once

#include <string>

namespace platform {

/// The other applications of the session. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Gives the keyboard back to the application that the user was working in.
    virtual void activateFrontmostApplication() = 0;

    /// Opens a file with an application, which comes to the front. An empty path opens nothing, so
    /// that all it does is to take the keyboard away from this program.
    virtual void openFile(const std::string& path, const std::string& application) = 0;
};

} // namespace platform
