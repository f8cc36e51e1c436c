#pragma once

#include <string>

namespace platform {

struct Notification {
    std::string title{};
    std::string text{};       ///< empty for none
    std::string sound{};      ///< a name of the sound theme; empty for silence
    std::string identifier{}; ///< empty for none
};

/// The desktop's notices. Main thread.
class Notifications {
  public:
    /// Asks for the desktop's default notification sound.
    static constexpr const char* defaultSound = "default";

    virtual ~Notifications() = default;

    /// Hands the notice over and does not wait. A desktop without notices is logged once.
    virtual void deliver(const Notification& notification) = 0;
};

} // namespace platform
