#pragma once

#include "platform/wayland/Desktop.h"
#include "program/session/Session.h"

/// A session of a Wayland compositor that lets a client hold the cursor, through a module that is
/// loaded for it.
class WaylandSession final : public Session {
  public:
    /// Neither a session nor an error where this is none, or none that the module knows.
    static Opened open(const Options& options, platform::Descriptors& descriptors,
                       platform::Log& log);

    /// The windows go through the X server of the session where the toolkit has no way of its own.
    const char* toolkitPlatform() const override { return "wayland;xcb"; }
    std::string displayName() const override;
    const platform::Displays& displays() const override { return desktop->displays(); }
    Services start(const Surroundings& surroundings) override;
    platform::Capabilities capabilities() const override { return desktop->capabilities(); }
    std::string missing() const override { return desktop->missing(); }
    bool hasSwitch() const override { return desktop->hasSwitch(); }
    /// Nothing waits for longer than a second.
    void aboutToEnd() override {}
    void end() override { desktop->end(); }

  private:
    explicit WaylandSession(const Options& options) : holds(options.hold) {}

    bool holds;
    std::function<void()> lost;
    std::unique_ptr<platform::wayland::Desktop> desktop;
};
