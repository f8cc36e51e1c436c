#pragma once

#include "platform/Displays.h"
#include "platform/x11/connection/Connection.h"

#include <utility>
#include <vector>
#include <xcb/randr.h>

namespace platform::x11 {

/// The RandR monitors, those that are mirrored or overlap as one screen. Also the place where the
/// root window's coordinates, whose origin is the top left of everything, are turned into the
/// program's, whose origin is the primary monitor.
class Displays final : public platform::Displays, private Listener {
  public:
    explicit Displays(Connection& connection);
    ~Displays() override;

    std::span<const Screen> screens() const override { return list; }
    ScreenId mainScreen() const override;
    void onChange(std::function<void()> changed) override { changedHandler = std::move(changed); }

    /// For the other services of X11: called before the program's own handler, and also when only
    /// the wiring of monitors to CRTCs has changed. One handler an owner; an empty one ends it.
    void onLayout(const void* owner, std::function<void()> changed);

    Point toTopLeft(int rootX, int rootY) const;
    /// The root pixel that holds a point, top-left coordinates.
    xcb_point_t toRoot(Point topLeft) const;
    /// A bottom-left rectangle in the root's coordinates, at least one pixel large.
    xcb_rectangle_t toRoot(Rect bottomLeft) const;

    /// The places of the screens in their order, root coordinates. Valid until the run loop turns.
    std::span<const xcb_rectangle_t> areas() const { return rootAreas; }

  private:
    struct Monitor;
    using Wiring = std::vector<xcb_randr_crtc_t>;

    void handle(const xcb_generic_event_t& event) override;
    void batchEnded() override;
    void fetch();
    void describe(const std::vector<Monitor>& monitors);

    Connection& connection;
    std::vector<Screen> list;
    std::vector<Wiring> wiring; ///< of each screen of `list`, of all its monitors
    std::vector<xcb_rectangle_t> rootAreas;
    int originX = 0; ///< of the first screen, root coordinates
    int originY = 0;
    int originHeight = 0;
    bool stale = false;
    std::function<void()> changedHandler;
    std::vector<std::pair<const void*, std::function<void()>>> layoutHandlers;
};

} // namespace platform::x11
