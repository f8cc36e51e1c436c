#pragma once

#include "platform/AttributedText.h"
#include "platform/Geometry.h"
#include "platform/Images.h"

#include <cstdint>
#include <optional>

namespace platform {

/// The bits of a window's style.
namespace style {
constexpr std::uint32_t titled = 1;
constexpr std::uint32_t closable = 1 << 1;
constexpr std::uint32_t resizable = 1 << 3;
constexpr std::uint32_t fullScreen = 1 << 14;
constexpr std::uint32_t fullSizeContentView = 1 << 15;
} // namespace style

/// A window with a title and buttons of the desktop's own. Destroying it closes it. Main thread.
class FramedWindow {
  public:
    virtual ~FramedWindow() = default;

    /// Bits of `style`; as the window is now, so that `fullScreen` comes and goes.
    virtual std::uint32_t styleMask() const = 0;
};

/// A piece of a window's contents, owned by the window. Sizes are in pixels of the desktop. Main
/// thread.
class View {
  public:
    virtual ~View() = default;

    /// In the view's own coordinates: the origin is its top left corner, y grows downwards.
    virtual Rect bounds() const = 0;

    /// The point in the view's own coordinates, from the desktop's top-left ones; nothing while the
    /// view is in no window.
    virtual std::optional<Point> fromDesktop(Point point) const = 0;

    virtual bool isHidden() const = 0;
    virtual void setHidden(bool hidden) = 0;

    /// Whether the view keeps a picture of itself, its layer.
    virtual bool wantsLayer() const = 0;
    virtual void setWantsLayer(bool wanted) = 0;

    /// What the view and those inside it look like, as large as the bounds, whether or not it is
    /// hidden.
    virtual Image display() = 0;

    /// The same from the layer: transparent while the view is hidden or has none.
    virtual Image layerContents() = 0;
};

/// A view that shows a text. Main thread.
class TextField {
  public:
    virtual ~TextField() = default;

    virtual AttributedText attributedText() const = 0;
    virtual void setAttributedText(const AttributedText& text) = 0;
};

} // namespace platform
