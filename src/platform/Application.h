#pragma once

namespace platform {

/// The process as an application of the session. Main thread only.
class Application {
  public:
    virtual ~Application() = default;

    /// Asks for an orderly end. It may be deferred or refused, so the call may return.
    virtual void terminate() = 0;

    /// Ends the process with that status, whatever `terminate` led to: settings are saved, and
    /// whatever was hidden, held or darkened is undone first.
    [[noreturn]] virtual void exit(int status) = 0;
};

} // namespace platform
