#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/x11/connection/Atoms.h"
#include "platform/x11/connection/Reply.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

namespace platform::x11 {

/// A service that takes part in the stream of events and replies of a Connection.
class Listener {
  public:
    virtual void handle(const xcb_generic_event_t& event) = 0;

    /// The answer to a request given to `Connection::awaitReply`; null when the request failed.
    virtual void handleReply(unsigned /*sequence*/, const void* /*reply*/) {}

    /// Everything that had arrived has been handled.
    virtual void batchEnded() {}

  protected:
    ~Listener() = default;
};

/// One name for all that lead to the same display: ":0.0" and ":0" are two screens of it.
std::string plainDisplayName(std::string name);

/// A connection to the X server: the stream of events and replies, the atoms and the numbers of the
/// extensions. Its services share it, and it must outlive them. Main thread.
class Connection {
  public:
    struct Opened {
        std::unique_ptr<Connection> connection; ///< null on failure
        std::string error;                      ///< one line without a full stop
    };

    /// `displayName` empty means $DISPLAY. `lost` is called once from the run loop when the server
    /// has gone; nothing works after that.
    static Opened open(const std::string& displayName, Descriptors& descriptors, Log& log,
                       std::function<void()> lost);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_connection_t* xcb() const { return connection.get(); }
    xcb_window_t root() const { return screen->root; }
    const xcb_screen_t& screenInfo() const { return *screen; }
    int screenNumber() const { return number; }
    /// As a child process has to be told it.
    const std::string& displayName() const { return name; }
    xcb_atom_t atom(AtomName atom) const { return atoms[static_cast<std::size_t>(atom)]; }
    /// A round trip; `xcb_atom_none` only when the connection is lost.
    xcb_atom_t intern(std::string_view text);

    std::uint8_t randrEvents() const { return randrFirstEvent; }
    std::uint8_t xfixesEvents() const { return xfixesFirstEvent; }
    std::uint8_t xinputOpcode() const { return xinputMajorOpcode; }
    /// Whether the server tells what is pushed against pointer barriers (XInput 2.3).
    bool tellsBarrierHits() const { return barrierHits; }

    /// The master pointer that is the user's: the one that this connection warps and asks about.
    /// Others are of other people, and nothing of theirs is the program's.
    std::uint16_t masterPointer() const { return pointerDevice; }
    /// Asks the server for it, which decides at the first question about the cursor's place and may
    /// do so again when devices have gone. A round trip.
    void findMasterPointer();

    /// Adds to the event mask of the root window, or takes away from it.
    void selectOnRoot(std::uint32_t eventMask, bool on = true);

    /// Hands events of these types (generic events are type 35) to the listener from now on.
    void listen(Listener& listener, std::initializer_list<std::uint8_t> types);
    /// The listener hears nothing more, awaited replies included.
    void forget(Listener& listener);

    /// Hands the reply of a request that has been sent to the listener when it arrives.
    void awaitReply(unsigned sequence, Listener& listener);

    /// Waits for a reply. Null on failure, which is not logged.
    template <class Cookie, class T>
    Reply<T> wait(Cookie cookie, T* (*take)(xcb_connection_t*, Cookie, xcb_generic_error_t**)) {
        if (patience) return Reply<T>(static_cast<T*>(waitInTime(cookie.sequence)));
        xcb_generic_error_t* error = nullptr;
        Reply<T> reply(take(connection.get(), cookie, &error));
        Reply<xcb_generic_error_t> owned(error);
        wakeIfNeeded();
        return reply;
    }

    /// Sends what has been requested.
    void flush();

    /// Waits until the server has done everything requested so far.
    void sync();

    /// For the end of the program: no wait goes beyond the deadline, and then the request counts as
    /// failed. A server that is stopped would have its clients wait for ever.
    void giveUpAt(std::chrono::steady_clock::time_point deadline) { patience = deadline; }
    /// False once the server has gone, or has not answered in time.
    bool isAnswering() const { return !late && xcb_connection_has_error(connection.get()) == 0; }

    /// For the one who reads this connection at a pace of his own. `readable` is called from the
    /// run loop, instead of `drain`, when something has arrived while the connection is watched.
    void readBy(std::function<void()> readable);
    /// Whether arrivals wake the program; they do from the beginning. What comes unwatched waits.
    void watch(bool on);
    /// Handles what has arrived, and sends what has been requested.
    void drain();
    /// Waits for an arrival, not beyond the deadline; false without one, or without a server.
    bool waitForArrival(std::chrono::steady_clock::time_point deadline);

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* c) const { xcb_disconnect(c); }
    };
    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;
    struct Awaited {
        unsigned sequence;
        Listener* listener;
    };

    Connection(Handle handle, std::string displayName, int screenNumber, Descriptors& descriptors,
               Log& log, std::function<void()> lost);

    std::string setUp();
    std::string negotiateExtensions();
    std::string refuseXwayland();
    void internAtoms();

    void* waitInTime(unsigned sequence);
    Reply<xcb_generic_event_t> nextEvent();
    void dispatch(const xcb_generic_event_t& event);
    bool dispatchReplies();
    void wakeIfNeeded();
    void endAfterLoss();

    Handle connection;
    std::string name;
    int number;
    Descriptors& descriptors;
    Log& log;
    std::function<void()> lost;
    xcb_screen_t* screen = nullptr;
    std::array<xcb_atom_t, atomTexts.size()> atoms{};
    std::uint8_t randrFirstEvent = 0;
    std::uint8_t xfixesFirstEvent = 0;
    std::uint8_t xinputMajorOpcode = 0;
    bool barrierHits = false;
    std::uint16_t pointerDevice = 0;
    std::uint32_t rootMask = 0;
    std::array<std::vector<Listener*>, 128> listeners;
    std::vector<Listener*> everyone;
    std::vector<Awaited> awaited;
    std::vector<Reply<xcb_generic_event_t>> heldEvents;
    std::function<void()> reader;
    std::optional<std::chrono::steady_clock::time_point>
        patience; ///< of waits; none but at the end
    bool late = false;
    bool watching = false;
    bool gone = false;
};

} // namespace platform::x11
