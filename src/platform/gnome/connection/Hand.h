#pragma once

#include "bus/Link.h"
#include "platform/Geometry.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::gnome {

/// The extension inside the shell, which holds, moves and hides the cursor, darkens monitors and
/// hears keys for the program. It comes and goes with the shell, with the lock of the screen and
/// with the user's settings; whoever has asked it for something asks again when it comes back. What
/// was asked for ends with the program, however that ends. Places are layout coordinates. Main
/// thread.
class Hand final : private bus::Link::User {
  public:
    /// A motion that a side of the held monitor has stopped.
    struct Push {
        Point from;
        Point step;      ///< across that side
        double time = 0; ///< seconds
    };
    /// The toolkit's mask of what is down.
    using State = std::uint32_t;
    static constexpr State shift = 1, control = 4, alt = 8, super = 0x40 | 0x4000000;
    static constexpr State leftButton = 0x100, middleButton = 0x200, rightButton = 0x400;
    struct Seen {
        Point place;
        State state = 0;
    };
    struct Veil {
        Rect area;
        std::uint32_t colour = 0; ///< 0xRRGGBB
        double opacity = 1;
        bool catches = true; ///< the pointer
    };

    /// Told from the run loop, never while a message is handled.
    struct Handlers {
        std::function<void(std::span<const Push>)> pushed;
        std::function<void(Seen)> seen; ///< may run a loop of its own
        /// The cursor has not come to the place of the last `hold`: somebody else confines it.
        std::function<void()> kept;
    };

    enum class Presence {
        here,
        notInstalled,
        switchedOff,
        broken,
        otherRelease, ///< of the shell than the extension is for
    };

    /// `program` is the name that the process has on the bus, `extension` what the shell calls the
    /// extension. `changed` is called from the run loop when `presence` is another one.
    Hand(Descriptors& descriptors, Log& log, std::string program, std::string extension,
         std::function<void()> changed);
    ~Hand() override;
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;

    Presence presence() const { return isHere ? Presence::here : why; }
    /// Whether the shell still has what a part of the extension is made of: "hold", "push",
    /// "watch", "veil", "cursor" or "keys".
    bool can(std::string_view part) const { return isHere && !lacks.contains(part); }
    void setHandlers(Handlers wanted) { handlers = std::move(wanted); }

    /// Calls `ask` when the extension has come, or has come back, and does not know of anything;
    /// `again` is false when the user has had everything freed by the shell's own shortcut, and
    /// nothing is to be asked for before there is a reason. One handler an owner.
    void onFresh(const void* owner, std::function<void(bool again)> ask);

    // Without the extension nothing of this does anything. Nobody waits but for `where`, for a
    // tenth of a second, and for `record`. What is covered, and what counts as a crossing, is told
    // after everything else that the same turn of the run loop asks for, and once.
    void hold(const Rect& monitor, std::optional<Point> place);
    void release();
    /// From how many pixels within a frame on a push is told at once; 0 where it never is.
    void setCrossing(double pixels);
    void warp(Point place);
    std::optional<Seen> where();
    void watch(bool motion, bool state);
    void cover(std::uint32_t number, const Veil& veil);
    void uncover(std::uint32_t number);
    void hideCursor(bool hidden);
    /// `granted` is told, from inside a message's handling, whether nobody else has the
    /// combination.
    void grab(std::uint32_t number, const std::string& accelerator,
              std::function<void(bool)> granted);
    void ungrab(std::uint32_t number);
    /// Told from inside a message's handling.
    void onPressed(std::function<void(std::uint32_t number)> handler) {
        pressed = std::move(handler);
    }
    /// Told from inside a message's handling, soon after the extension has come, whether the user
    /// wishes for dark windows, and again when that changes.
    void onDark(std::function<void(bool wished)> handler) { dark = std::move(handler); }
    /// From now on all keys go to `typed`: XKB's number, or 0 where only the modifiers changed.
    /// Told from inside a message's handling. False where the keyboard is somebody else's.
    bool record(std::function<void(std::uint32_t keycode, State state)> typed);
    void stopRecording();
    void switchWorkspace(int step);

  private:
    struct Claim {
        Hand* owner = nullptr;
        std::function<void(bool)> granted;
        bus::Slot slot;
    };

    void attach(sd_bus& bus) override;
    void up() override;
    void turn() override;

    bus::Message begin(const char* member);
    void send(bus::Message message);
    bus::Message call(bus::Message message, std::uint64_t microseconds);
    void showLater(std::uint32_t number, const std::optional<Veil>& veil);
    void sendLater();
    void join();
    void joined(sd_bus_message* reply);
    void readLacks(sd_bus_message& reply);
    void ask(bool again);
    void askWhy();
    void leave();
    int heard(sd_bus_message& message);
    void readPushes(sd_bus_message& message);

    bus::Link link;
    std::string program, extension;
    std::function<void()> changed;
    Handlers handlers;
    std::vector<std::pair<const void*, std::function<void(bool)>>> fresh;
    std::function<void(std::uint32_t)> pressed;
    std::function<void(bool)> dark;
    std::function<void(std::uint32_t, State)> typed;
    std::vector<Push> pushes;
    std::deque<Seen> sights;
    bool isKept = false; ///< to be told at the next turn
    std::vector<std::pair<std::uint32_t, std::optional<Veil>>> veils; ///< nothing to uncover
    std::optional<double> crossing;
    std::map<std::uint32_t, Claim> claims;
    bus::Slot ownerMatch, signalMatch, joining, question;
    bool isHere = false;
    std::set<std::string, std::less<>> lacks; ///< parts of the extension
    Presence why = Presence::notInstalled;
    std::optional<bool> isFresh; ///< to be told at the next turn, and whether to ask again
};

} // namespace platform::gnome
