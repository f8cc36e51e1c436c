#pragma once

#include "platform/Focus.h"
#include "platform/x11/connection/Connection.h"

namespace platform::x11 {

/// Remembers, from the window manager's announcements, which foreign window was active last.
class Focus final : public platform::Focus, private Listener {
  public:
    /// `ownPid` is the process whose windows are the program's own.
    Focus(Connection& connection, std::uint32_t ownPid);
    ~Focus() override;
    Focus(const Focus&) = delete;
    Focus& operator=(const Focus&) = delete;

    /// Nothing while no window of the program is active. That window stays in front, also of one
    /// that fills the screen. A round trip at most.
    void activateFrontmostApplication() override;
    void openNothingWith(const std::string&) override { activateFrontmostApplication(); }

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void askActiveWindow();
    bool isFullScreen(xcb_window_t window);

    Connection& connection;
    std::uint32_t pid;
    unsigned activeAsked = 0; ///< sequence of the question in flight, 0 for none
    unsigned pidAsked = 0;
    xcb_window_t asked = XCB_NONE; ///< the window whose process is asked for
    xcb_window_t foreign = XCB_NONE;
    bool ownIsActive = false;
};

} // namespace platform::x11
