#pragma once

#include "platform/Log.h"

#include <functional>
#include <memory>
#include <string>

namespace platform::qt {

/// One running program a session: the name on the session bus tells. The object there is an
/// org.freedesktop.Application, so a launcher can call it too.
class SingleInstance {
  public:
    /// `name` is a bus name such as "org.example.program"; the object's path is made from it.
    SingleInstance(std::string name, Log& log);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// False when another process has the name; that one has then been activated. Without a session
    /// bus this cannot be known: it is logged and answered with true.
    bool claim();

    /// Called from the run loop when the program is started again, or asked to do anything.
    void onActivate(std::function<void()> handler);

  private:
    class Object;

    std::string name;
    Log& log;
    std::unique_ptr<Object> object;
};

} // namespace platform::qt
