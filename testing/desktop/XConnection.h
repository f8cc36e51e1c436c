#pragma once

#include "testing/Child.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <xcb/xcb.h>

namespace support {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;
using Event = Reply<xcb_generic_event_t>;

/// Takes over a reply from a call of libxcb.
template <class T>
Reply<T> own(T* reply) {
    return Reply<T>(reply);
}

/// A connection of the tests' own to the private server. One thread at a time.
class XConnection {
  public:
    /// Throws std::runtime_error when the server does not answer.
    explicit XConnection(const std::string& display);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    xcb_connection_t* get() const { return connection; }
    const xcb_screen_t& screen() const { return *firstScreen; }
    xcb_window_t root() const { return firstScreen->root; }

    xcb_atom_t atom(std::string_view name) const;

    /// Takes the pointer as an open menu does, until this object goes; false where another has it.
    /// With a window that is shown it also keeps the cursor in there, as games do.
    bool grabPointer(xcb_window_t confineTo = XCB_NONE) const;
    void ungrabPointer() const;

    /// Whether somebody has the keyboard for himself, as an open menu does.
    bool keyboardIsGrabbed() const;

    /// Asks the window manager to minimise the windows that it manages and whose width is between
    /// these, in pixels.
    void minimiseWindows(int widerThan, int narrowerThan = 1 << 16) const;

    /// Returns after the server has carried out everything that was sent here; the events that it
    /// caused up to then are in the queue.
    void sync() const;

    /// The next event that is there; null when none is.
    Event nextEvent() const { return Event(xcb_poll_for_event(connection)); }

    /// Looks at `reached` now and after each event; `seen` may look at the events themselves.
    /// False when the time is up; throws std::runtime_error when the server is gone.
    bool waitUntil(const std::function<bool()>& reached, milliseconds limit = generous,
                   const std::function<void(const xcb_generic_event_t&)>& seen = {}) const;

  private:
    xcb_connection_t* connection;
    xcb_screen_t* firstScreen = nullptr;
};

} // namespace support
