#pragma once

#include "platform/session/HoldGeometry.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {
using session::Box;
using session::Side;

/// Whether the cursor can cross the sides of a screen while another client may have confined it: a
/// game, a virtual machine. The protocol does not tell, so it is tried, while nobody else is
/// served, and undone before anybody can look. Nothing here waits: an answer comes before those of
/// later requests.
class Reach final : private Listener {
  public:
    /// On the connection that the events are read from.
    explicit Reach(Connection& x) : connection(x) {}
    ~Reach();
    Reach(const Reach&) = delete;
    Reach& operator=(const Reach&) = delete;

    /// A cursor that `side` of the screen has stopped at `from` tries to get to `to` beyond it. One
    /// that has gone from the side since stays where it is, and then nothing is reached.
    void tryOut(const Box& screen, Side side, xcb_point_t from, xcb_point_t to);
    /// A cursor outside the screen, at `from`, tries to get to `to` on it.
    void tryIn(const Box& screen, xcb_point_t from, xcb_point_t to);
    /// Asks whether another client has grabbed the pointer at all. While none has, everything is
    /// reached. Disturbs nobody.
    void askForGrab();
    /// What has been asked is of no interest any more.
    void forget();

    enum class Answer { none, reached, notReached };
    /// Of the last question.
    Answer answer() const { return last; }

  private:
    void handle(const xcb_generic_event_t&) override {}
    void handleReply(unsigned sequence, const void* reply) override;

    void warp(const xcb_rectangle_t& only, xcb_window_t from, int x, int y);
    void await(unsigned sequence, bool isGrab);

    Connection& connection;
    /// Cannot be grabbed, so that asking for it takes nothing. Made when it is first needed.
    xcb_window_t unmapped = XCB_NONE;
    Answer last = Answer::none;
    unsigned asked = 0; ///< its sequence, 0 for none
    bool isAboutGrab = false;
    bool wantsOut = false;
    Box box;
};

} // namespace platform::x11
