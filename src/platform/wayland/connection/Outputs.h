#pragma once

#include "platform/Displays.h"
#include "platform/wayland/connection/Connection.h"

#include <memory>

namespace platform::wayland {

/// The compositor's outputs as screens, from left to right and then downwards: no output is the
/// first one by itself, and those that show the same are one. Their pixels are those of the layout,
/// in which a scaled output is smaller than its panel. It is also the place where layout
/// coordinates, whose origin is the compositor's, are turned into the program's.
class Outputs final : public platform::Displays {
  public:
    explicit Outputs(Connection& connection);
    ~Outputs() override;

    std::span<const Screen> screens() const override { return list; }
    ScreenId mainScreen() const override { return list.empty() ? ScreenId::none : list[0].id; }
    void onChange(std::function<void()> changed) override { changedHandler = std::move(changed); }

    /// For the session's other services: called before the program's own handler. One handler an
    /// owner; an empty one ends it.
    void onLayout(const void* owner, std::function<void()> changed);

    struct Place {
        ScreenId id = ScreenId::none;
        wl_output* output = nullptr;
        std::string name;
        Rect area;        ///< layout coordinates
        double scale = 1; ///< the panel's pixels for one of the layout's
    };
    /// In the order of the screens. Valid until the run loop turns.
    std::span<const Place> places() const { return ordered; }
    /// The one that holds a point, layout coordinates, or is nearest to it; null without any.
    const Place* at(Point layout) const;

    Point toLayout(Point topLeft) const { return {topLeft.x + origin.x, topLeft.y + origin.y}; }
    Point toTopLeft(Point layout) const { return {layout.x - origin.x, layout.y - origin.y}; }
    /// A rectangle in bottom-left coordinates.
    Rect toLayout(Rect bottomLeft) const;
    /// Its columns from the upper to the lower edge of the desktop, layout coordinates both.
    Rect fullHeight(Rect area) const;
    /// The nearest point on a screen, layout coordinates.
    Point nearest(Point layout) const;

  private:
    struct Output;

    void add(std::uint32_t name, wl_output* output);
    void remove(std::uint32_t name);
    void update();

    Connection& connection;
    std::vector<std::unique_ptr<Output>> outputs;
    std::vector<std::string> known; ///< names, by which an output that comes back is the same
    std::vector<Place> ordered;
    std::vector<Screen> list;
    Point origin; ///< of the first screen, layout coordinates
    bool stale = true;
    std::function<void()> changedHandler;
    std::vector<std::pair<const void*, std::function<void()>>> layoutHandlers;
};

} // namespace platform::wayland
