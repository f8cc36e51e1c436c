#pragma once

#include <string>

namespace platform {

/// Which application has the keyboard. A session that gives it back by itself does nothing here.
/// Main thread.
class Focus {
  public:
    virtual ~Focus() = default;

    /// Gives the keyboard back to the application that the user was working in.
    virtual void activateFrontmostApplication() = 0;

    /// Opens nothing with an application, so that all it does is to take the keyboard away from
    /// this program. Where there is no such application, the one that had it gets it back.
    virtual void openNothingWith(const std::string& application) = 0;
};

} // namespace platform
