#pragma once

#include "platform/PopupLayer.h"
#include "platform/StatusItem.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/menu/MenuPopup.h"
#include "platform/qt/tray/ExportedMenu.h"

#include <optional>

namespace platform::qt {

class QtApplication;
class TrayIcon;

/// The item's menu. The icon in the tray shows the picture and passes on the clicks; without one
/// the menu opens all the same.
class QtStatusItem final : public StatusItem {
  public:
    /// `icons` has the pictures of entries; without it they have none. What is lent must outlive
    /// the last call from the run loop.
    /// `popups` shows the menu where the window system has such a layer.
    QtStatusItem(QtRunLoop& runLoop, QtApplication& application, const Pictures* icons = nullptr,
                 TrayIcon* tray = nullptr, PopupLayer* popups = nullptr);
    ~QtStatusItem() override;

    void create(Menu& menu, MenuTarget& target) override;
    void setImage(std::string_view name, bool isTemplate) override;
    void setToolTip(std::string_view text) override;
    void popUpMenu() override;
    void labelChanged(const Label& label) override;

    /// The item was clicked: button 0 left, 1 right, 2 middle. Opens the menu beside the panel, and
    /// at the cursor where no tray tells a place, if the target leaves something in it, and returns
    /// when it has closed. While the menu is open a click closes it; while an alert is open it
    /// brings the alert to the front. A left one shows windows again that were minimised, instead.
    void clicked(int buttonNumber);

    /// The program was started again: opens the menu, or brings to the front what a left click
    /// would.
    void activate();

  private:
    /// With the keyboard at that entry, where it still is in the outermost menu.
    void popUp(std::optional<MenuEntryId> beginning);
    /// Of the menu on the screen; nothing where no tray tells a place.
    std::optional<QPoint> cornerOf(MenuPopup& popup) const;
    void choose(const MenuEntryId& entry);
    void sliderMoved(const MenuEntryId& entry, double value, EventType how);
    void boxClicked(CheckBox& box);

    QtRunLoop& runLoop;
    QtApplication& application;
    MenuPopup::Listener listener;
    TrayIcon* tray;
    PopupLayer* popups;
    Menu* menu = nullptr;
    MenuTarget* target = nullptr;
    std::string toolTip;
    MenuPopup* open = nullptr;        ///< while it is
    std::optional<MenuEntryId> byKey; ///< the entry that was chosen last, if the keyboard did
    std::optional<ExportedMenu> exported;
};

} // namespace platform::qt
