#pragma once

#include "platform/x11/connection/Connection.h"

#include <functional>

namespace platform::x11 {

/// Whether a compositing manager draws the screen, told by the owner of its selection.
class Compositor final : private Listener {
  public:
    explicit Compositor(Connection& connection);
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    bool isRunning() const { return owner != XCB_NONE; }
    void onChange(std::function<void()> changed) { changedHandler = std::move(changed); }

  private:
    void handle(const xcb_generic_event_t& event) override;

    Connection& connection;
    xcb_atom_t selection;
    xcb_window_t owner = XCB_NONE;
    std::function<void()> changedHandler;
};

} // namespace platform::x11
