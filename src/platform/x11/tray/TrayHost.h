#pragma once

#include "platform/TrayWindow.h"
#include "platform/x11/connection/Connection.h"

#include <functional>
#include <optional>

namespace platform::x11 {

/// The tray manager of the screen: the owner of its selection, and what it says of itself.
class TrayHost final : private Listener {
  public:
    struct Events {
        std::function<void()> came; ///< also when another took over, or wants another visual
        std::function<void()> went;
        std::function<void()> restyled; ///< its colours or its orientation
    };

    /// None of the events happens before the constructor has returned.
    TrayHost(Connection& connection, Events events);
    ~TrayHost();
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;

    xcb_window_t window() const { return owner; } ///< XCB_NONE while there is none
    xcb_visualid_t visual() const { return wantedVisual; }
    std::optional<TrayColour> foreground() const { return colour; }
    bool isVertical() const { return vertical; }

    /// Asks the host to take the window in.
    void requestDock(xcb_window_t icon);

  private:
    void handle(const xcb_generic_event_t& event) override;
    void noteMessage(const xcb_client_message_event_t& message);
    void noteProperty(const xcb_property_notify_event_t& notify);
    void noteOwner(xcb_window_t newOwner);
    void readAll();
    xcb_get_property_cookie_t ask(xcb_atom_t property, xcb_atom_t type) const;

    Connection& connection;
    Events events;
    xcb_atom_t selection, manager, opcode, visualProperty, coloursProperty, orientationProperty;
    xcb_window_t owner = XCB_NONE;
    xcb_visualid_t wantedVisual = XCB_NONE;
    std::optional<TrayColour> colour;
    bool vertical = false;
};

} // namespace platform::x11
