#pragma once

#include "platform/Capabilities.h"
#include "platform/Descriptors.h"
#include "platform/Picture.h"
#include "platform/Platform.h"
#include "platform/PopupLayer.h"
#include "platform/RecordableHotKeys.h"
#include "platform/TrayWindow.h"
#include "platform/WakeLock.h"
#include "program/Options.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// What the desktop knows the product by.
struct Product {
    std::string identifier; ///< also its name on the session bus, and that of its files
    std::string name;       ///< for people
    std::string icon;       ///< the name of a picture in its folder
};

/// One kind of desktop: what its window system does for the program. It is joined before the
/// toolkit starts. Main thread.
class Session {
  public:
    /// What the services stand on. It is lent for as long as they live, but for the values.
    struct Surroundings {
        Product product;
        platform::RunLoop& runLoop;
        platform::Settings& settings;
        platform::PictureSource& pictures; ///< of windows
        std::string folder;                ///< for what has to be undone after a kill; or empty
        std::string data;                  ///< the program's own, which it came with
        /// The path of an executable that belongs to the program: "gamma-guard".
        std::function<std::string(const std::string& name)> helper;
        /// Whether a window of the program is active; no round trip.
        std::function<bool()> ownWindowActive;
        /// Takes the one who is told when that changes.
        std::function<void(std::function<void()>)> onOwnWindowActive;
        /// Calls an operation from the run loop, also while a modal alert runs.
        std::function<void(std::function<void()>)> later;
        /// The wish for dark windows in the window system's settings, or that they have none, as
        /// often as it changes and from inside `start` on; at first there is none.
        std::function<void(std::optional<bool>)> darkWished;
        std::function<void()> capabilitiesChanged; ///< called from the run loop
        std::function<void()> lost; ///< called once from the run loop; nothing works after that
    };

    /// The session's own, which live until `end`.
    struct Services {
        platform::Displays& displays;
        platform::Pointer& pointer;
        platform::Cursor& cursor;
        platform::InputEvents& input;
        platform::Keyboard& keyboard;
        platform::RecordableHotKeys& hotKeys;
        platform::Windows& windows;
        platform::Focus& focus;
        platform::WakeLock& wakeLock;
        platform::TrayWindow* tray;   ///< null where the window system has none of its own
        platform::PopupLayer* popups; ///< null where the toolkit places its menus itself
    };

    struct Opened {
        std::unique_ptr<Session> session; ///< null with an error
        std::string error;                ///< one line that says what is wrong and what to do
    };

    /// Finds out which kind of desktop this is, and joins it. What is lent must outlive the
    /// session.
    static Opened open(const Options& options, platform::Descriptors& descriptors,
                       platform::Log& log);

    virtual ~Session() = default;

    /// The toolkit's platform plugin that goes with this session.
    virtual const char* toolkitPlatform() const = 0;

    /// What tells this display from the user's others.
    virtual std::string displayName() const = 0;

    /// The monitors, also before `start`.
    virtual const platform::Displays& displays() const = 0;

    /// Brings the services up. Needs a QApplication. Once.
    virtual Services start(const Surroundings& surroundings) = 0;

    /// What this desktop allows of what the session brings. After `start`.
    virtual platform::Capabilities capabilities() const = 0;

    /// What keeps the session from doing most of that and the user can mend, one sentence; empty
    /// for nothing. After `start`.
    virtual std::string missing() const { return {}; }

    /// Whether the desktop shows a switch with a menu in the place of an icon; not before `start`.
    virtual bool hasSwitch() const { return false; }

    /// The program ends: from now on nothing waits for the window system for longer than a second
    /// in all. What it has not done by then is left to whoever undoes it after a kill.
    virtual void aboutToEnd() = 0;

    /// Ends the services, upon which all that they did to the desktop is undone, and has sent what
    /// that takes when it returns: the process leaves without disconnecting.
    virtual void end() = 0;
};
