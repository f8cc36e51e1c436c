#pragma once

#include "platform/Displays.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"

#include <functional>

/// While a user logs in the session may still clone its monitors, or have lit only one of them, and
/// how many there are is seen only when it has set them up. Main thread.
class LoginWait {
  public:
    /// What is lent must outlive the object. Until it is over the wait has the displays' handler of
    /// changes.
    LoginWait(platform::RunLoop& loop, platform::Displays& screens, platform::Log& logger)
        : runLoop(loop), displays(screens), log(logger) {}
    ~LoginWait();
    LoginWait(const LoginWait&) = delete;
    LoginWait& operator=(const LoginWait&) = delete;

    /// Calls `over` at once where there are two screens, and else from the run loop: when there
    /// are, when their list has stood still for two seconds, or after ten.
    void start(std::function<void()> over);

  private:
    void look();
    void end();

    platform::RunLoop& runLoop;
    platform::Displays& displays;
    platform::Log& log;
    std::function<void()> whenOver;
    platform::TimerId quiet = platform::TimerId::none;
    platform::TimerId limit = platform::TimerId::none;
};
