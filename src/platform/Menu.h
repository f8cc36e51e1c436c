#pragma once

#include "platform/CheckBox.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// A menu as plain data. The application builds it, a platform shows it and reports what the user
// does with it to a MenuTarget.

namespace platform {

struct Menu;

/// A line of text that changes while its menu is open.
struct Label {
    std::string name; ///< tells labels apart
    std::string text;
};

struct Slider {
    double minimum = 0;
    double maximum = 1;
    double value = 0;  ///< the platform keeps it from minimum to maximum
    int tickMarks = 0; ///< evenly spread, above the bar, the ends included
    std::string action;
};

/// The contents of an entry that is a slider with its centred label above it.
struct SliderView {
    // Points, as the entry is drawn.
    static constexpr double width = 210;
    static constexpr double height = 50;
    static constexpr double labelHeight = 20;
    static constexpr double sliderInset = 5;

    Slider slider;
    std::shared_ptr<Label> label;
    /// What stands at the slider's ends; empty for nothing.
    struct Ends {
        std::string least{}, most{};
    };
    Ends ends{};
    /// What the label says of a value; empty where there is nothing better than the number. It may
    /// be called as long as the menu is as it was built.
    std::function<std::string(double value)> text{};
    /// What the label's number grows by where the value grows by 1.
    double labelStep = 1;
};

/// The contents of an entry that is a picture of a screen with a check box at each corner and side.
/// The boxes belong to the application and outlive the menu.
struct BoundsView {
    struct Named {
        std::string_view name;
        CheckBox* box;
        std::string text{}; ///< its place, in words
    };
    std::array<Named, 4> corners; ///< clockwise from the top left
    std::array<Named, 4> sides;   ///< left, top, right, bottom
    std::string explanation;
};

struct MenuItem {
    std::string title;     ///< what names the entry: the key of its text where it has one
    std::string text;      ///< as shown
    std::string action;    ///< selector sent when it is chosen; empty for none
    int state = 0;         ///< 1 shows a mark
    bool isToggle = false; ///< without its mark it shows that it could have one
    bool enabled = true;
    bool leadsNowhere = false; ///< what it would open is no real address
    bool separator = false;
    bool madeWithAction = false;  ///< `action` may have been cleared since
    std::string toolTip;          ///< as inspected; by it a click knows what it opens
    std::string hint;             ///< what is shown as the tool tip; empty for none
    std::string image;            ///< of the bundle; empty for none
    bool imageIsTemplate = false; ///< only its shape counts, the colour is the text's
    std::shared_ptr<Menu> submenu;
    std::variant<std::monostate, SliderView, BoundsView> view;

    bool hasView() const { return !std::holds_alternative<std::monostate>(view); }

    /// Whether the user sees it greyed. An entry that was made with an action needs it and its
    /// flag, with or without a submenu; one that was made without needs a submenu or a view. What
    /// leads nowhere is greyed whatever it has.
    bool greyed() const {
        if (separator) return false;
        if (leadsNowhere) return true;
        if (madeWithAction) return action.empty() || !enabled;
        return submenu == nullptr && !hasView();
    }
};

struct Menu {
    std::string title;
    std::vector<std::unique_ptr<MenuItem>> items;
};

/// Hears of what the user does with a menu. Main thread; called from inside the menu's own loop.
/// Any call may rebuild the menu, so what was passed is not used after it.
class MenuTarget {
  public:
    virtual ~MenuTarget() = default;

    /// The menu is about to open. What it holds on return is what opens; nothing if it is empty.
    virtual void menuWillOpen(Menu& menu) = 0;

    /// An entry that is not greyed was chosen; one with a submenu too, by a click.
    virtual void chosen(MenuItem& item) = 0;

    /// A slider has its new value.
    virtual void moved(Slider& slider) = 0;

    /// An enabled check box has its new state.
    virtual void clicked(CheckBox& box) = 0;
};

} // namespace platform
