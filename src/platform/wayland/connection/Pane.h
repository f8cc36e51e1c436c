#pragma once

#include "platform/wayland/connection/Connection.h"

#include <cstdint>

namespace platform::wayland {

/// Premultiplied 0xAARRGGBB.
using Pixel = std::uint32_t;

/// A surface of one colour, which the compositor stretches. What it is told is in force when it is
/// committed. Main thread.
class Pane {
  public:
    explicit Pane(Connection& connection);
    ~Pane();
    Pane(const Pane&) = delete;
    Pane& operator=(const Pane&) = delete;

    /// To a size in layout coordinates, at least one pixel.
    void stretch(double width, double height);
    void paint(Pixel pixel);
    /// Whether it catches the pointer, as it does at first.
    void setCatches(bool catches);
    void commit() { wl_surface_commit(drawn.get()); }

    wl_surface* surface() const { return drawn.get(); }

  private:
    Connection& connection;
    Handle<wl_surface> drawn;
    Handle<wp_viewport> viewport;
};

} // namespace platform::wayland
