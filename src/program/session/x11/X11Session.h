#pragma once

#include "platform/x11/input/InputEvents.h"
#include "platform/x11/keys/HotKeys.h"
#include "platform/x11/keys/Keyboard.h"
#include "platform/x11/overlay/Windows.h"
#include "platform/x11/pointer/Cursor.h"
#include "platform/x11/pointer/Pointer.h"
#include "platform/x11/session/Displays.h"
#include "platform/x11/session/Focus.h"
#include "platform/x11/session/ScreenSaver.h"
#include "platform/x11/session/XSettings.h"
#include "platform/x11/tray/TrayWindow.h"
#include "program/session/Session.h"

#include <optional>

/// A session of an X server of its own. Under Xwayland, which neither sees the pointer outside its
/// windows nor moves it, it is refused.
class X11Session final : public Session {
  public:
    static Opened open(const Options& options, platform::Descriptors& descriptors,
                       platform::Log& log);

    const char* toolkitPlatform() const override { return "xcb"; }
    std::string displayName() const override;
    const platform::Displays& displays() const override { return *screens; }
    Services start(const Surroundings& surroundings) override;
    platform::Capabilities capabilities() const override;
    void aboutToEnd() override;
    void end() override;

  private:
    struct Parts {
        Parts(X11Session& session, const Surroundings& surroundings);

        platform::x11::Hold hold;
        platform::x11::Pointer pointer;
        platform::x11::Cursor cursor;
        platform::x11::InputEvents input;
        platform::x11::Keyboard keyboard;
        platform::x11::HotKeys hotKeys;
        platform::x11::Windows windows;
        platform::x11::Focus focus;
        platform::x11::ScreenSaver screenSaver;
        platform::x11::XSettings settings;
        platform::x11::TrayWindow tray;
    };

    X11Session(const Options& options, platform::Descriptors& loop, platform::Log& logger)
        : descriptors(loop), log(logger), serverHolds(options.hold) {}
    /// An error as of `Opened`.
    std::string connect();

    platform::Descriptors& descriptors;
    platform::Log& log;
    bool serverHolds;
    std::function<void()> lost;
    // Two, since the one that the devices' events come through is read at a pace of its own, and
    // nothing else may have to wait for that.
    std::unique_ptr<platform::x11::Connection> general, input;
    std::optional<platform::x11::Displays> screens;
    std::optional<Parts> parts;
};
