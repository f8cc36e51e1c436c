#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/// Numbers a window in the order in which windows first come on screen, from 1; 0 before that.
using WindowId = std::uint32_t;

enum class WindowKind { dark, marker, border, info };
enum class WindowColour { clear, black, red };

/// What an overlay looks like and where it stands among windows.
struct WindowStyle {
    WindowKind kind = WindowKind::dark;
    Rect frame; ///< bottom-left coordinates, pixels
    float alpha = 1;
    int level = 0; ///< the key number of the named level; overlays stand above application windows
    std::uint32_t behaviour = 0; ///< collection behaviour bits
    WindowColour background = WindowColour::clear;
    bool opaque = false;
    std::string image{}; ///< bundle image stretched over the window; empty for none
    /// Shown from the upper to the lower edge of the desktop, whatever the frame's y and height.
    bool fullHeight = false;
    /// Where it is seen until it is first moved, whatever `frame` says; bottom-left, pixels.
    std::optional<Rect> seenAt{};
};

/// A borderless window over a screen. Destroying it takes it off the screen. Main thread.
class Window {
  public:
    virtual ~Window() = default;

    virtual WindowId id() const = 0;
    virtual bool isVisible() const = 0;

    /// Bottom-left coordinates, pixels.
    virtual Rect frame() const = 0;
    virtual void setFrame(Rect frame) = 0;

    /// 0 is fully transparent, 1 is as the style says; values beyond are held at the nearer one.
    virtual void setAlpha(float alpha) = 0;

    /// Whether clicks go through to what lies below. At first they land on the window.
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderOut() = 0;
};

/// Makes overlay windows. Main thread.
class Windows {
  public:
    virtual ~Windows() = default;

    /// The new window is not on screen yet. Never null; on a desktop that cannot show it the window
    /// stays invisible and that is logged once.
    virtual std::unique_ptr<Window> create(const WindowStyle& style) = 0;

    /// Whether markers that are on screen are seen, as they are at first. Nothing else about them
    /// changes, and no `isVisible`.
    virtual void letMarkersBeSeen(bool seen) = 0;
};

} // namespace platform
