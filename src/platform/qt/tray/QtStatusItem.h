#pragma once

#include "platform/StatusItem.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/menu/MenuPopup.h"

#include <functional>
#include <string>

namespace platform::qt {

class QtApplication;

/// The item's menu. Whatever stands in the tray for the item shows the picture and passes on the
/// clicks; without a tray the menu opens all the same.
class QtStatusItem final : public StatusItem {
  public:
    struct Tray {
        std::function<void()> create; ///< called once, before the first picture
        std::function<void(std::string_view name, bool isTemplate)> showImage;
    };

    /// `icon` is asked for the pictures of entries, as MenuPopup says.
    QtStatusItem(QtRunLoop& runLoop, QtApplication& application,
                 std::function<QIcon(const std::string& name, bool isTemplate)> icon);
    ~QtStatusItem() override;

    /// Comes before `create`.
    void setTray(Tray standsInTheTray) { tray = std::move(standsInTheTray); }

    void create(Menu& menu, MenuTarget& target) override;
    void setImage(std::string_view name, bool isTemplate) override;
    void popUpMenu() override;
    void labelChanged(const Label& label) override;

    /// The item was clicked: button 0 left, 1 right, 2 middle. Opens the menu at the cursor if the
    /// target leaves something in it, and returns when it has closed. While the menu is open a
    /// click closes it; while an alert is open it brings the alert to the front.
    void clicked(int buttonNumber);

    /// The program was started again: opens the menu, or brings an open alert to the front.
    void activate();

  private:
    void sliderMoved(const MenuEntryId& entry, double value, EventType how);
    void boxClicked(CheckBox& box);

    QtRunLoop& runLoop;
    QtApplication& application;
    MenuPopup::Listener listener;
    Tray tray;
    Menu* menu = nullptr;
    MenuTarget* target = nullptr;
    MenuPopup* open = nullptr; ///< while it is
};

} // namespace platform::qt
