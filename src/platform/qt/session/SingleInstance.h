#pragma once

#include "platform/Log.h"
#include "platform/qt/session/BusLink.h"

#include <functional>
#include <memory>
#include <string>

namespace platform::qt {

/// The program's name on the session bus, and the object there: an org.freedesktop.Application, so
/// a launcher can call it too. The name is claimed again when a bus comes back.
class SingleInstance {
  public:
    /// `name` is a bus name such as "org.example.program"; the object's path is made from it. Of
    /// two programs that both have a `display`, and not the same one, each is single. To be made
    /// when a `BusLink` may be.
    SingleInstance(std::string name, Log& log, std::string display = {});
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// False when another process has the name; that one has then been activated, unless
    /// `activates` is false. Without a session bus this cannot be known: it is logged and answered
    /// with true.
    bool claim(bool activates = true);

    /// Called from the run loop when the program is started again, or asked to do anything.
    void onActivate(std::function<void()> handler);

  private:
    class Object;
    enum class Claim { granted, queued, taken, unanswered };

    Claim requestName(unsigned flags);
    bool callOwner(bool activates);
    void claimAgain();

    std::string name;
    std::string display;
    Log& log;
    BusLink link;
    std::unique_ptr<Object> object;
};

} // namespace platform::qt
