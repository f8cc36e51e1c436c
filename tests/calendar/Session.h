#pragma once

#include "testing/SessionBus.h"
#include "testing/TempFolder.h"

#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace calendartests {

/// A session of this process's own for the length of a test program: home, folders, bus, the zone
/// Europe/Rome. Made before anything uses GLib. The calendar server is started by the bus, when it
/// is first asked, and everything ends with the object.
class Session {
  public:
    enum class Server { present, absent };

    explicit Session(Server server = Server::present);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Kills the process of the session whose command line has that word in it. Returns how many
    /// there were.
    int kill(const std::string& word) const;

  private:
    std::string marker() const;

    testing_support::TempFolder folder;
    std::unique_ptr<support::SessionBus> bus;
};

support::Environment environment();

/// Another program that uses the calendars: see client.cpp.
class Client {
  public:
    /// In the session that those variables tell of.
    explicit Client(const support::Environment& session = environment());

    /// What it printed for that command. Throws std::runtime_error for its errors.
    std::string ask(const std::string& command);
    /// Adds the events of a whole .ics text.
    void add(const std::string& calendar, const std::string& ics);

  private:
    std::unique_ptr<support::ChildProcess> process;
    testing_support::TempFolder folder;
    support::Pipe input;
    std::size_t read = 0;
    int asked = 0;
};

} // namespace calendartests
