#pragma once

#include "bus/Link.h"

#include <functional>
#include <string>

namespace bus {

/// The program's name on the session bus, and an org.freedesktop.Application on the object there,
/// which launchers call. The name is claimed again when a bus comes back. Main thread.
class SingleInstance final : private Link::User {
  public:
    /// `name` is a bus name such as "org.example.program"; the object's path is made from it. Of
    /// two programs that both have a `display`, and not the same one, each is single. What is lent
    /// must outlive the object.
    SingleInstance(std::string name, Link& link, platform::Log& log, std::string display = {});
    ~SingleInstance() override;

    /// False when another process has the name; that one has then been activated, unless
    /// `activates` is false. Waits for answers, a second each. While the link has no bus this
    /// cannot be known, and is answered with true.
    bool claim(bool activates = true);

    /// Called from the run loop when the program is started again, or asked to do anything.
    void onActivate(std::function<void()> handler) { activated = std::move(handler); }

  private:
    friend struct ApplicationObject;
    enum class Claim { granted, taken, refused };

    void attach(sd_bus& bus) override;
    void up() override;
    Claim requestName(std::uint64_t flags);
    bool callOwner(bool activates);
    int activate(sd_bus_message& call);

    std::string name;
    std::string path;
    std::string display;
    Link& link;
    platform::Log& log;
    Slot object, request;
    bool isClaimed = false; ///< for the first time, upon which it is claimed on every bus
    std::function<void()> activated;
};

} // namespace bus
