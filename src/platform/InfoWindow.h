#pragma once

#include "platform/AttributedText.h"
#include "platform/CheckBox.h"
#include "platform/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

// A window that tells about the program: pictures, texts, links, buttons. The application lays it
// out and hears of what the user does, a platform shows it.
//
// Frames of views are in points of the window's contents, whose origin is at the bottom left, y
// growing upwards. One point is one pixel of a display that is not scaled. They say what the
// application wants: a platform keeps the width and the order from the top, and may put the views
// onto the desktop's own grid, the window then being as high as they need.

namespace platform {

struct Size {
    double width = 0;
    double height = 0;
};

struct InfoButton {
    Rect frame{};
    std::string title{};
    std::string image{};  ///< of the bundle, shown without a frame instead of the title
    std::string says{};   ///< what a picture does, to those who do not see it
    std::string link{};   ///< the address that it leads to; empty where it leads to none
    std::string action{}; ///< selector sent when it is pressed
    bool closes = false;  ///< Enter, Escape and the window manager's way to close press it
};

struct InfoCheckBox {
    Rect frame{};
    std::string title{};
    CheckBox box{};
};

struct InfoText {
    std::string name{}; ///< tells texts apart
    Rect frame{};
    AttributedText text{};
    double fontSize = 12;    ///< 12 is the desktop's standard size
    bool asksTarget = false; ///< of a click on its link, before its address is opened
};

using InfoView = std::variant<InfoButton, InfoCheckBox, InfoText>;

/// Hears of what the user does with an information window. Main thread. Any call may destroy the
/// window by ending the program, and may hide it.
class InfoTarget {
  public:
    virtual ~InfoTarget() = default;

    virtual void pressed(const InfoButton& button) = 0;

    /// The box has its new state.
    virtual void clicked(CheckBox& box) = 0;

    /// Whether the click on the link is dealt with; otherwise its address is opened.
    virtual bool clickedOnLink(const InfoText& view, const std::string& link) = 0;
};

/// The window has a title bar without buttons, and the width that it was given. Main thread.
class InfoWindow {
  public:
    virtual ~InfoWindow() = default;

    /// From the call that shows it to the one that hides it.
    virtual bool isVisible() const = 0;

    /// Bottom-left coordinates with the size of the contents in points. At first it is empty, and
    /// what is in front with an empty frame appears as soon as it has another.
    virtual Rect frame() const = 0;
    virtual void setFrame(Rect frame) = 0;

    virtual void setTitle(const std::string& title) = 0;

    /// What it holds from now on. The keyboard reaches the views in the order of their places.
    virtual void setViews(std::vector<InfoView> views) = 0;

    /// Collection behaviour bits; 2 brings it to the desktop that the user is on.
    virtual void setCollectionBehaviour(std::uint32_t behaviour) = 0;

    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderOut() = 0;
};

/// Makes information windows, and says what their contents need. Main thread.
class InfoWindows {
  public:
    virtual ~InfoWindows() = default;

    /// Not on screen yet, and never null. The target must outlive it.
    virtual std::unique_ptr<InfoWindow> create(InfoTarget& target) = 0;

    /// The height in points of the text in lines of that width, without margins.
    virtual double textHeight(const std::string& text, double width, double fontSize) const = 0;

    /// The natural size in points of an image of the bundle; empty, and logged once, where there is
    /// none.
    virtual Size imageSize(const std::string& name) const = 0;
};

} // namespace platform
