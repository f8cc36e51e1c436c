#pragma once

#include "engine/Appoggio.h"
#include "platform/Platform.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What the application object has in memory; everything else it reads from the settings and the
// desktop at each use.

namespace palisor {

using platform::CheckBox;
using platform::Label;
using platform::Menu;
using platform::MenuItem;
using platform::Point;
using platform::Rect;
using platform::ScreenId;
using platform::Slider;
using platform::TimerId;

/// The fields under the system's own names, in the order in which snapshots list them.
struct AppState {
    using WindowList = std::vector<std::unique_ptr<platform::Window>>;

    /// Calls `field(name, value)` for each field with a plain value, in the order of declaration.
    template <class Visitor>
    void visitFields(Visitor&& field) const;

    std::unique_ptr<Appoggio> appoggio;
    std::map<std::string, std::string, std::less<>> proKeys; ///< held modifiers, by key code
    bool flagriopenInfo = false;
    std::int32_t keycombo = 0;
    bool inHotArea = false; ///< an edge has fired and the cursor has not been back inside since

    std::string helperAppBundleIdentifier;
    platform::AssertionId assertionID = 0; ///< the last one made; stays after its release

    // The extent of the desktop; y in top-left coordinates. MAX_X is the largest *left* edge.
    float MIN_X = 0;
    float MAX_X = 0;
    float MIN_Y = 0;
    float MAX_Y = 0;
    float MAX_W = 0; ///< right edge of screenMax
    float MAX_H = 0; ///< height of the main screen
    ScreenId screenMax = ScreenId::none;
    ScreenId screenMaxH = ScreenId::none;
    ScreenId switchedScreen =
        ScreenId::none;      ///< the screen that held the cursor at the last detection
    Rect switchedScreenRect; ///< its frame, top-left coordinates

    // Cursor positions, top-left coordinates.
    Point cordmouse;
    Point oldcordmouse;
    Point oldoldcordmouse;
    Point savedcoordsMD;
    Point lastCoord; ///< last place known to be inside the current screen
    bool JUST_MY_MOVE = false;
    bool cursorMustToBeHidden = false;
    bool combo = false; ///< CTRL+ALT+CMD is held
    TimerId timerRetardHide = TimerId::none;
    TimerId timerCursorMustToBeHidden = TimerId::none;
    TimerId timerSchedule = TimerId::none;

    // The switches of the hot borders. Corners: 1 top-left, 2 top-right, 3 bottom-right,
    // 4 bottom-left. Sides: 1 left, 2 top, 3 right, 4 bottom.
    CheckBox butangolo1, butangolo2, butangolo3, butangolo4;
    CheckBox butlato1, butlato2, butlato3, butlato4;
    std::vector<CheckBox*> AButtonBounds;
    std::string TFBounds;
    double countanimation = 0; ///< steps of the border window's fade, 0 to 5
    TimerId timerAnimBorders = TimerId::none;

    // The status menu. Made by createBarStatusItem; the entries are made anew by updateMenuItems.
    std::shared_ptr<Menu> mainMenu, timeSubMenu, boundsSubMenu, velocitySubMenu;
    std::shared_ptr<Label> tv, tvVelocity;
    MenuItem* itemHotBorders = nullptr;
    MenuItem* menuitemForBoundsView = nullptr;

    std::optional<WindowList> AWindowsDark; ///< one per darkened screen, nothing before the first
    std::unique_ptr<platform::Window> windowHotBorders;
    std::unique_ptr<platform::Window> windowCursorX, windowCursorY;
    std::optional<WindowList> aWindowCursorX; ///< one per screen, nothing before they are made

    std::unique_ptr<platform::InfoWindow> windowInfo; ///< never null
    CheckBox butautologin;                            ///< not shown; says what was last accepted
    platform::Alert alertrate;                        ///< the one shown last
    platform::Alert alertShortCut;                    ///< the popup shown last

    // What the maker's service asked for.
    std::optional<std::string> event_1, event_2; ///< addresses, one for each button
    bool active_1 = false;                       ///< whether the button goes on to the start
    bool active_2 = false;
    bool otherApps = false;    ///< whether the menu shows the other products
    std::int8_t allowRate = 0; ///< minutes until the user is asked for a rating; 0 for never

    platform::Calendar* store = nullptr; ///< null before start, and in the other products
    TimerId customDefaultEventTimer = TimerId::none;
};

} // namespace palisor
