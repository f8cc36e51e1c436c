#pragma once

#include "platform/Capabilities.h"
#include "platform/Cursor.h"
#include "platform/Descriptors.h"
#include "platform/Displays.h"
#include "platform/Focus.h"
#include "platform/InputEvents.h"
#include "platform/Keyboard.h"
#include "platform/Log.h"
#include "platform/Pointer.h"
#include "platform/PopupLayer.h"
#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"
#include "platform/WakeLock.h"
#include "platform/Windows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

// The door between the program and the module of the Wayland sessions, a shared library, so that
// the other sessions load none of what it needs.

namespace platform::wayland {

/// The services of one compositor. Main thread.
class Desktop {
  public:
    /// What the services stand on; lent for as long as they live.
    struct Surroundings {
        platform::Settings& settings;
        std::string identifier; ///< of the product
        std::string folder;     ///< for what has to be undone after a kill; empty for none
        std::string data{};     ///< the folder of the program's data files
        bool holds = true;      ///< whether the cursor may be held
        /// The path of an executable that belongs to the program: "sway-guard".
        std::function<std::string(const std::string& name)> helper;
        /// What the shell calls the extension that came with the program, and the command that
        /// installs it for the user and switches it on.
        std::string extension{}, setup{};
        /// Whether its files are where the shell looks for them at login.
        std::function<bool()> isExtensionInstalled{};
        /// Whether a window of the program is active; no round trip.
        std::function<bool()> ownWindowActive;
        /// Calls an operation from the run loop, also while a modal alert runs.
        std::function<void(std::function<void()>)> later;
        /// The user's wish for dark windows, where the compositor tells it, as often as it changes;
        /// called from the run loop.
        std::function<void(std::optional<bool>)> darkWished{};
        std::function<void()> capabilitiesChanged; ///< called from the run loop
    };
    struct Services {
        platform::Pointer& pointer;
        platform::Cursor& cursor;
        platform::InputEvents& input;
        platform::Keyboard& keyboard;
        platform::RecordableHotKeys& hotKeys;
        platform::Windows& windows;
        platform::Focus& focus;
        platform::WakeLock& wakeLock;
        platform::PopupLayer* popups = nullptr; ///< null where the toolkit's own way is as good
    };

    virtual ~Desktop() = default;

    /// What the compositor calls itself, with its version where it tells: "sway 1.10.1". Also
    /// before `start`.
    virtual std::string compositorName() const { return {}; }
    /// Also before `start`.
    virtual const platform::Displays& displays() const = 0;
    virtual platform::Displays& displays() = 0;
    /// Once.
    virtual Services start(const Surroundings& surroundings) = 0;
    /// What this compositor allows, and with what limits. After `start`.
    virtual platform::Capabilities capabilities() const = 0;
    /// What keeps it from doing most of that and the user can mend, one sentence; empty for
    /// nothing. After `start`.
    virtual std::string missing() const { return {}; }
    /// Whether it shows a switch with a menu in the place of an icon; not before `start`.
    virtual bool hasSwitch() const { return false; }
    /// A window of the program has become active or is so no longer.
    virtual void ownWindowChanged() = 0;
    /// Ends the services, upon which all that they did to the desktop is undone.
    virtual void end() = 0;
};

struct OpenedDesktop {
    std::unique_ptr<Desktop> desktop; ///< null with an error
    std::string error;                ///< empty where this is no compositor that is known there
};

/// The one symbol that the module exports. What is lent must outlive the desktop; `lost` is called
/// once from the run loop, and nothing works after that.
using OpenDesktop = void(OpenedDesktop& opened, Descriptors& descriptors, Log& log,
                         std::function<void()> lost);
inline constexpr const char* openDesktopName = "openWaylandDesktop";

} // namespace platform::wayland
