#pragma once

#include "platform/Geometry.h"
#include "platform/wayland/connection/Outputs.h"
#include "platform/wayland/connection/Pane.h"

namespace platform::wayland {

/// A pane above all windows. The compositor takes it off the screen when the program dies. Main
/// thread.
class Layer {
  public:
    struct Look {
        const Outputs::Place& place; ///< the output that it is on
        Rect area;                   ///< layout coordinates, on that output
        Pixel pixel = 0;
        bool takesKeyboard = false; ///< all keys go to it while it is shown
        bool isBelow = false;       ///< all other layers, and full-screen windows
    };
    Layer(Connection& connection, const Look& look);
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    void setPixel(Pixel pixel);
    /// Whether it catches the pointer, as it does at first.
    void setCatches(bool catches);

    /// Has what is told to its subsurfaces in force.
    void commit();

    wl_surface* surface() const { return pane.surface(); }
    /// The point of the layout that a point of the surface shows.
    Point toLayout(Point local) const { return {local.x + area.x, local.y + area.y}; }
    /// Whether it was drawn, which the compositor learns with what is sent next.
    bool isDrawn() const { return isConfigured; }
    /// Whether it was taken off the screen since it was made, as when its output goes.
    bool isClosed() const { return closed; }

    /// The layer that a surface belongs to; null for none, and for another's.
    static Layer* of(wl_surface* surface);

  private:
    void configured(std::uint32_t serial, std::uint32_t width, std::uint32_t height);
    void draw();

    Connection& connection;
    Rect area;
    Pixel pixel;
    Pane pane;
    Handle<zwlr_layer_surface_v1> layer;
    bool isConfigured = false;
    bool closed = false;
};

} // namespace platform::wayland
