#pragma once

#include "platform/RunLoop.h"
#include "platform/StatusItem.h"
#include "platform/qt/info/QtInfoWindows.h"

/// The status item. The menu that opens by itself at the very first start would lie over the
/// information window, which opens then too: it comes when that is closed, and whatever is asked
/// then is answered. Main thread.
class FirstMenu final : public platform::StatusItem {
  public:
    /// What is lent must outlive the object, which uses the windows' handler.
    FirstMenu(platform::StatusItem& shown, platform::qt::QtInfoWindows& infoWindows,
              platform::RunLoop& loop, bool isFirstStart)
        : item(shown), windows(infoWindows), runLoop(loop), isNext(isFirstStart) {}

    void create(platform::Menu& menu, platform::MenuTarget& target) override {
        item.create(menu, target);
    }
    void setImage(std::string_view name, bool isTemplate) override {
        item.setImage(name, isTemplate);
    }
    void setToolTip(std::string_view text) override { item.setToolTip(text); }
    void labelChanged(const platform::Label& label) override { item.labelChanged(label); }

    /// Returns at once where the menu has to wait.
    void popUpMenu() override;

  private:
    void popUpAfterwards();

    platform::StatusItem& item;
    platform::qt::QtInfoWindows& windows;
    platform::RunLoop& runLoop;
    bool isNext; ///< the next call is for that menu
};
