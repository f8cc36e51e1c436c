#pragma once

#include "app/SettingsTable.h"
#include "platform/Geometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace palisor {
class AppDelegate;
}

// What scripts, panels and the command line may ask of the application object. Main thread only,
// from the run loop and never from inside an operation. Before the start there is nothing to
// switch: `setActive`, `free` and `crossTo` do nothing then.

namespace palisor::control {

struct Monitor {
    std::string name;     ///< the output's, as the desktop lists it ("HDMI-1")
    platform::Rect frame; ///< top-left coordinates, pixels
    double scale = 1;     ///< pixels for one unit of the desktop
    bool primary = false;
    bool held = false; ///< it holds the cursor
    bool dark = false;
    bool operator==(const Monitor&) const = default;
};

/// All that can be seen from outside; two that are equal look the same.
struct State {
    bool active = false; ///< as the user left it: true also while freed
    std::string held;    ///< name of the monitor that holds the cursor, empty for none
    int freed = 0;       ///< whole seconds left, rounded up
    std::vector<Monitor> monitors;
    std::string shortcut; ///< as the menu writes it, empty for none
    bool operator==(const State&) const = default;
};

State state(const AppDelegate& app);

/// As the menu's entry does; also ends the time that `free` gave. Nothing when it is so already.
/// On a single monitor the barrier product shows an alert and ends, as it does by its menu.
void setActive(AppDelegate& app, bool on);

/// Whether it would be on afterwards: there are monitors enough for the product.
bool canSwitchOn(const AppDelegate& app);

/// Switches off for that long and then on again, without a word to the settings; another call
/// starts the time afresh, 0 ends it at once. Switched off by the user: nothing. The time goes by
/// while an alert runs or a menu is open, and is over at their end at the earliest.
void free(AppDelegate& app, double seconds);

/// Puts the cursor into the middle of that monitor, and holds it there if it is held anywhere.
/// False where no monitor is called that.
bool crossTo(AppDelegate& app, std::string_view monitor);

enum class Refusal {
    none, ///< it is done
    unknownKey,
    wrongType,        ///< no number where one is expected, no key of that name, ...
    outOfRange,       ///< a number that is too small or too large
    notOfThisProduct, ///< another product of the family has it
    needsModifier,    ///< a shortcut without one, or with Shift alone
    shortcutTaken,    ///< another program, or this one for something else, has the combination
    shortcutNeeded,   ///< the barrier keeps one; to stay hidden asks for one
};

/// In the user's units, as text that `setSetting` takes.
struct SettingState {
    const Setting* setting = nullptr;
    std::string value;
    bool isDefault = false; ///< reads as if nobody had set it
};

/// Those of this product, in the order of the table.
std::vector<SettingState> settings(const AppDelegate& app);
/// Nothing for an unknown one and for one of other products.
std::optional<SettingState> setting(const AppDelegate& app, std::string_view keyOrName);

/// Takes on and off, yes and no, true and false, 1 and 0; numbers, also with "%" or "s" behind
/// them; "Ctrl+Super+K" and "none". Stored and in effect when it returns.
Refusal setSetting(AppDelegate& app, std::string_view keyOrName, std::string_view value);
/// Puts the default back.
Refusal resetSetting(AppDelegate& app, std::string_view keyOrName);

/// Is told of changes, while they happen: it only takes note and asks afterwards. At most one;
/// must outlive the application object or be taken away before.
class Watcher {
  public:
    virtual ~Watcher() = default;

    /// Something of State may have changed; that the time of `free` passes is not told, only that
    /// it begins and ends.
    virtual void changed() = 0;
    /// The cursor is held on another monitor than before. The names live as long as the call.
    virtual void crossed(std::string_view from, std::string_view to) = 0;
};

/// Null for nobody.
void watch(AppDelegate& app, Watcher* watcher);

} // namespace palisor::control
