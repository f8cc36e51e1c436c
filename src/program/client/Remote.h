#pragma once

#include "bus/Handles.h"
#include "program/client/Words.h"

#include <chrono>
#include <functional>
#include <string>

namespace client {

/// The running program, reached over the session bus. Every operation throws Failure, and waits for
/// two seconds at most unless it says otherwise.
class Remote {
  public:
    explicit Remote(std::string product);

    /// False where nobody has the product's name.
    bool isRunning();
    /// Of a program that ends: what asks next is not to meet it on its way out. Two seconds at
    /// most.
    void waitUntilGone();
    /// Has the bus start it, as a program of the session. Ten seconds.
    void start();
    /// Throws where the program is of a version that has no such interface; of any other it says so
    /// on standard error.
    void compareVersions();

    /// Appends a call's arguments; negative for an error.
    using Fill = std::function<int(sd_bus_message*)>;
    /// The reply to a method of the product's interface. One that has only just been started is
    /// asked again until it is ready, for that long.
    bus::Message call(const char* method, const Fill& fill = {},
                      std::chrono::seconds patience = {});
    bus::Message getAll();
    void setActive(bool on, std::chrono::seconds patience);

    sd_bus* bus() const { return connection.get(); }
    const std::string& name() const { return busName; }
    const std::string& path() const { return objectPath; }

  private:
    void connect();
    bus::Message call(const char* interface, const char* method, const Fill& fill,
                      std::chrono::seconds patience, std::chrono::milliseconds limit);

    std::string product, busName, objectPath;
    bus::Connection connection;
};

} // namespace client
