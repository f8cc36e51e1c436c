#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace platform {

/// Shows menus where a window system lets no program place its windows, nor hear of a click beside
/// them: over all monitors, with the pointer and the keyboard of the user meanwhile. Points and
/// areas are the toolkit's, from the top left, and one of its pixels may be several of the
/// monitor's. Main thread.
class PopupLayer {
  public:
    struct Key {
        std::uint32_t symbol = 0; ///< of X: 0xff0d is Return
        std::string text;         ///< what it types, UTF-8
        std::uint32_t flags = 0;  ///< of a Shortcut, that are held
    };

    /// All called from the run loop, and none after `close`.
    struct Listener {
        std::function<void(Point place)> moved;
        /// 0 left, 1 right, 2 middle; also where no popup is.
        std::function<void(int button, bool isDown)> clicked;
        /// Notches of a wheel, upwards.
        std::function<void(double notches)> scrolled;
        std::function<void(const Key& key)> pressed; ///< which does not repeat
        std::function<void()> released;              ///< any key
        /// A monitor came, went or changed: what is shown may be in the wrong place, or gone.
        std::function<void()> disturbed;
    };

    struct Picture {
        Point corner;                          ///< the upper left one
        int width = 0, height = 0;             ///< of the pixels
        double scale = 1;                      ///< pixels for one of the toolkit's
        std::span<const std::uint32_t> pixels; ///< premultiplied 0xAARRGGBB, row after row
    };

    virtual ~PopupLayer() = default;

    /// From now on the pointer and the keyboard are the layer's. Tells where the pointer is, for
    /// which it waits a third of a second at most, and nothing where there is none.
    virtual std::optional<Point> open(Listener listener) = 0;

    /// What the panels leave of the monitor that a place is on, as far as they are on the side of
    /// that place; all of it where that is not told within a third of a second. While it is open.
    virtual Rect roomAt(Point place) = 0;

    /// Shows a popup, above those that came before it, or another picture of it. The number is the
    /// caller's. What lies on several monitors is seen on that of its corner alone.
    virtual void show(int popup, const Picture& picture) = 0;
    virtual void hide(int popup) = 0;

    virtual void close() = 0;
};

} // namespace platform
