#pragma once

#include <atomic>
#include <string>
#include <systemd/sd-bus.h>
#include <thread>

namespace support {

/// The login manager of one session, on a system bus of the test's own, as far as the session's
/// lock screen uses it: it has the screen locked and unlocked and is told when it is. Answers on a
/// thread of its own until it is destroyed.
class LoginManager {
  public:
    /// Throws std::runtime_error where the bus has one already, or there is none.
    explicit LoginManager(const std::string& busAddress);
    ~LoginManager();
    LoginManager(const LoginManager&) = delete;
    LoginManager& operator=(const LoginManager&) = delete;

    /// Asks the session to; `isLocked` tells when it did. Unlocking takes no password.
    void lock() { ask(Request::lock); }
    void unlock() { ask(Request::unlock); }
    /// What the session has told last.
    bool isLocked() const { return locked; }
    /// Whether the lock screen hears what it is asked.
    bool isUsed() const { return used; }

  private:
    enum class Request { none, lock, unlock, end };
    void ask(Request request);
    void serve();
    static int answer(sd_bus_message* message, void* own, sd_bus_error* error);

    sd_bus* bus = nullptr;
    int wake = -1;
    std::atomic<Request> request = Request::none;
    std::atomic<bool> locked = false, used = false;
    std::thread thread;
};

} // namespace support
