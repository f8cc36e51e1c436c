#pragma once

#include "platform/InputEvents.h"

namespace platform {

/// The event of the program's own windows that is being handled.
struct CurrentEvent {
    EventType type = EventType::mouseMoved;
    int buttonNumber = 0; ///< 0 left, 1 right, 2 middle
};

/// The process as an application of the session. Main thread only.
class Application {
  public:
    virtual ~Application() = default;

    /// The last event that one of the program's own windows, menus or its tray item had.
    virtual CurrentEvent currentEvent() const = 0;

    /// Brings the program to the front, whatever else is active.
    virtual void activateIgnoringOtherApps() = 0;

    /// Asks for an orderly end. It may be deferred or refused, so the call may return.
    virtual void terminate() = 0;

    /// Ends the process with that status, whatever `terminate` led to: settings are saved, and
    /// whatever was hidden, held or darkened is undone first.
    [[noreturn]] virtual void exit(int status) = 0;
};

} // namespace platform
