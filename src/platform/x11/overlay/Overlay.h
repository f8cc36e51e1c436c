#pragma once

#include "platform/x11/overlay/ShapedPicture.h"
#include "platform/x11/overlay/Windows.h"

#include <optional>

namespace platform::x11 {

class Overlay final : public platform::Window {
  public:
    Overlay(Windows& windows, const WindowStyle& style);
    ~Overlay();
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;

    WindowId id() const override { return number; }
    bool isVisible() const override { return visible; }
    Rect frame() const override { return style.frame; }
    void setFrame(Rect frame) override;
    void setAlpha(float alpha) override;
    void setIgnoresMouseEvents(bool ignores) override;
    void makeKeyAndOrderFront() override;
    void orderOut() override;

    /// Whether it is on screen, and not a marker while none is to be seen.
    bool isSeen() const;
    void markersChanged();
    /// A compositor has come or gone.
    void changeOver();
    /// The monitors have moved.
    void place();
    void addHandles(std::vector<xcb_window_t>& handles) const;

  private:
    enum class Form { translucent, gammaAndCatcher, catcher, solid };

    Form wantedForm() const;
    xcb_rectangle_t wantedArea() const;
    void make();
    void unmake();
    void setHints();
    void setInputShape();
    void thinOut();
    std::uint32_t backgroundPixel() const;
    void drawPicture();
    void showPicture();
    void setOpacity();
    void updateGamma();
    void map();
    xcb_connection_t* xcb() const { return owner.connection.xcb(); }

    Windows& owner;
    WindowStyle style;
    Form form = Form::solid;
    xcb_window_t window = XCB_NONE; ///< made when first shown
    xcb_rectangle_t area{};         ///< of the window, root coordinates
    std::optional<ShapedPicture> shaped;
    WindowId number = 0;
    bool visible = false;
    bool ignoresMouse = false;
};

} // namespace platform::x11
