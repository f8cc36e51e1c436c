#pragma once

#include "bus/Handles.h"
#include "testing/PrivateSession.h"
#include "testing/desktop/Hand.h"

#include <optional>

namespace support {

/// What the shell asks about the cursor, in its JavaScript; older ones have it elsewhere.
constexpr const char* cursorTracker =
    "(global.backend.get_cursor_tracker?.()"
    " ?? imports.gi.Meta.CursorTracker.get_for_display(global.display))";

/// A headless GNOME Shell of the test's own with monitors side by side and what stands for the
/// system's bus. It uses nothing of the desktop that it runs on. The process must not be root,
/// which the shell's bus would refuse.
class PrivateShell : public PrivateSession {
  public:
    struct Options {
        std::vector<std::string> monitors{"1280x720", "1280x720"}; ///< from left to right
        /// Run in the session before the shell starts, each to its end.
        std::vector<std::vector<std::string>> before{};
    };

    /// Why there can be none on this machine; nothing where there can.
    static std::optional<std::string> missing();

    PrivateShell() : PrivateShell(Options{}) {}
    /// Returns when the shell is up. Throws std::runtime_error where it does not come to that.
    explicit PrivateShell(const Options& options);

    std::unique_ptr<ChildProcess> spawn(const std::vector<std::string>& command) const;

    /// Runs a piece of JavaScript in the shell and returns its value as JSON; throws
    /// std::runtime_error where it fails.
    std::string run(const std::string& script) const;
    bool isTrue(const std::string& script) const { return run(script) == "true"; }
    /// Of all monitors, as a PNG file; throws std::runtime_error where there is none.
    void picture(const std::string& file) const;
    struct Place {
        int x = 0, y = 0;
        bool operator==(const Place&) const = default;
    };
    Place cursor() const;
    /// It is no motion of the mouse.
    void moveTo(int x, int y) const;

    /// For callers; owned by the object.
    sd_bus* bus() const { return connection.get(); }

  private:
    bool isUp() const;

    bus::Connection connection;
};

/// A mouse and a keyboard of the private shell's, by its remote desktop. Every call returns when
/// the shell has taken it in (push: all of it).
class ShellHand {
  public:
    explicit ShellHand(const PrivateShell& shell);
    ~ShellHand();
    ShellHand(const ShellHand&) = delete;
    ShellHand& operator=(const ShellHand&) = delete;

    void relative(double dx, double dy);
    /// `steps` events of (dx, dy) at `hz` a second. Returns the seconds that it took.
    double push(double dx, double dy, int steps, int hz);
    /// The same at `speed` pixels a second to the right, or to the left where it is negative: like
    /// a mouse it sends whole pixels, and nothing where there is none yet. Each has the time at
    /// which a mouse would have sent it, also where the shell, which sends them itself, comes late:
    /// what comes over the bus has the time at which the shell read it.
    void pushAt(double speed, double seconds, int hz);
    /// The kernel's codes.
    void button(int code, bool down);
    void key(unsigned code, bool down);
    /// All pressed in their order, and released in the reverse one.
    void chord(const std::vector<unsigned>& codes);

  private:
    template <class... Arguments>
    void tell(bool waits, const char* member, const char* types, Arguments... arguments);

    const PrivateShell& shell;
    sd_bus* bus;
    std::string session;
};

} // namespace support
