#pragma once

#include "testing/SessionBus.h"
#include "testing/TempFolder.h"

namespace support {

/// What every private Wayland session of the tests has: a home, a runtime folder and a session bus
/// of its own, what is started in it, and its compositor. Everything ends with the object. One
/// thread, which must outlive the object.
class PrivateSession {
  public:
    PrivateSession(const PrivateSession&) = delete;
    PrivateSession& operator=(const PrivateSession&) = delete;

    const Environment& environment() const { return variables; }
    std::string configFolder() const { return folder.path("home/.config"); }
    std::string runtimeFolder() const { return folder.path("run"); }
    /// For clients: the path of the compositor's socket.
    std::string socket() const { return runtimeFolder() + "/" + variables.at("WAYLAND_DISPLAY"); }
    pid_t pid() const { return server->pid(); }
    pid_t busPid() const { return bus->pid(); } ///< of the session bus
    /// What the compositor has logged.
    std::string log() const { return server->output() + server->errors(); }

    std::unique_ptr<ChildProcess> spawn(const std::string& command,
                                        const std::vector<std::string>& arguments = {}) const;

  protected:
    enum class SystemBus { none, own };
    /// `more` are variables of this kind of session; a system bus of its own is a bus with nothing
    /// on it. Throws std::runtime_error without a bus.
    explicit PrivateSession(const Environment& more, SystemBus system = SystemBus::none);
    /// Ends all that has been started in it, the compositor last.
    ~PrivateSession();

    const std::string& busAddress() const { return bus->address(); }

    testing_support::TempFolder folder;
    Environment variables;
    std::unique_ptr<ChildProcess> server; ///< the compositor; the deriving class starts it

  private:
    std::unique_ptr<SessionBus> systemBus, bus;
};

/// A command that runs as a user without rights where the process is root's, which some compositors
/// refuse to be; and the folder, with all that is in it by now, becomes that user's. Throws
/// std::runtime_error where that does not work.
std::vector<std::string> asAUser(std::vector<std::string> command, const std::string& folder);

/// Goes on as a user without rights where the process is root's, but for reading where the test
/// itself lies in a folder that is closed to others; there is no way back. For compositors that
/// serve nobody but their own user. Throws std::runtime_error where that does not work.
void becomeAUser();

} // namespace support
