#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

struct TrayColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// A rectangle in device pixels, y downwards.
struct PixelArea {
    int left = 0, top = 0, width = 0, height = 0;
};

/// The program's icon in a tray of the window system's own, as a window there. Hosts of such
/// windows come, go and come back; without one nothing is seen. Main thread.
class TrayWindow {
  public:
    struct Handlers {
        /// The picture: `size` rows of `size` pixels, premultiplied ARGB; empty for none. The
        /// colour is the text's on the panel, and none where that cannot be told. Asked for at
        /// each repaint.
        std::function<std::vector<std::uint32_t>(int size, std::optional<TrayColour> foreground)>
            draw;
        /// A button (0 left, 1 right, 2 middle) was pressed and released on the icon. May run a
        /// modal loop: nobody holds the pointer any more.
        std::function<void(int button)> clicked;
        /// The pointer has come onto the icon, or left it.
        std::function<void(bool on)> hovered;
        /// `hasHost` answers otherwise than before. Not called from inside `show`.
        std::function<void()> hostChanged;
    };

    /// Both from the top left corner of all monitors, as much as is on them.
    struct Place {
        PixelArea icon;
        PixelArea panel;         ///< what holds it
        bool isVertical = false; ///< the panel
    };

    virtual ~TrayWindow() = default;

    /// From now on the icon is with the host, as often as one comes. Once.
    virtual void show(Handlers handlers) = 0;

    /// False before `show`, and where the host only passes the icon on to one of another kind.
    virtual bool hasHost() const = 0;

    /// The colour that text has to have on the desktop's panels as they look now, whether or not
    /// there is a host; none where that cannot be told. Not for the path of a pointer's event.
    virtual std::optional<TrayColour> panelText() = 0;

    /// Where the icon is now; nothing while it is not seen. Waits for the window system, as does
    /// the next: not for the path of a pointer's event.
    virtual std::optional<Place> place() = 0;

    /// The desktop's panels as they lie now, whether or not there is a host; from the top left
    /// corner of all monitors.
    virtual std::vector<PixelArea> panels() = 0;

    /// The icon's name for hosts and for screen readers; UTF-8.
    virtual void setTitle(const std::string& text) = 0;

    /// The picture is asked for again and painted, where there is a host.
    virtual void repaint() = 0;
};

} // namespace platform
