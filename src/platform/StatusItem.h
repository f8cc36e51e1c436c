#pragma once

#include "platform/Menu.h"

#include <string_view>

namespace platform {

/// The program's item in the desktop's tray, and the menu that hangs from it. A tray may come late,
/// go and return; without one the item is not seen and that is said once. Main thread.
class StatusItem {
  public:
    virtual ~StatusItem() = default;

    /// Puts the item into the tray. The menu and the target must outlive it. A click of any button
    /// asks the target first, with the click as the application's current event.
    virtual void create(Menu& menu, MenuTarget& target) = 0;

    /// Shows a picture of the bundle; a template takes the colour of the panel. An unknown name
    /// leaves the item without a picture.
    virtual void setImage(std::string_view name, bool isTemplate) = 0;

    /// The item's name, and what it is doing, in words: shown by the tray, and read out.
    virtual void setToolTip(std::string_view text) = 0;

    /// Opens the menu as it stands and returns when it has closed. No timer fires meanwhile.
    virtual void popUpMenu() = 0;

    /// Shows a label's new text where its menu is open.
    virtual void labelChanged(const Label& label) = 0;
};

} // namespace platform
