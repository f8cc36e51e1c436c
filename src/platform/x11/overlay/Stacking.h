#pragma once

#include "platform/x11/connection/Connection.h"

#include <functional>
#include <span>
#include <vector>

namespace platform::x11 {

/// Raises the window above all others.
void putOnTop(Connection& connection, xcb_window_t window);

/// Keeps the overlays above the windows that the window manager manages. Some managers (xfwm4) put
/// a window that is mapped or raised on top of everything. What they do not manage, menus and tool
/// tips, may stand above the overlays and is left there, so that nobody fights for the top.
class Stacking final : private Listener {
  public:
    /// `shown` adds the overlays that are on screen to a list.
    Stacking(Connection& connection, std::function<void(std::vector<xcb_window_t>&)> shown);
    ~Stacking();
    Stacking(const Stacking&) = delete;
    Stacking& operator=(const Stacking&) = delete;

    /// Nothing is listened to while no overlay is on screen.
    void setActive(bool active);

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void batchEnded() override;

    void suspect(xcb_window_t window);
    void putAbove(xcb_window_t managed, std::span<const xcb_window_t> order);

    Connection& connection;
    std::function<void(std::vector<xcb_window_t>&)> shown;
    bool active = false;
    std::vector<xcb_window_t> suspects; ///< managed windows that may have come to the top
    std::vector<xcb_window_t> own;
    bool changed = false;
    unsigned asked = 0; ///< sequence of the question in flight, 0 for none
    xcb_window_t lastMoved = XCB_NONE;
    xcb_window_t lastMovedAbove = XCB_NONE;
};

} // namespace platform::x11
