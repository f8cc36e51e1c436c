#include "program/FirstMenu.h"

#include <utility>

void FirstMenu::popUpMenu() {
    if (std::exchange(isNext, false) && windows.isAnyShown())
        windows.onHidden([this] { popUpAfterwards(); });
    else
        item.popUpMenu();
}

// By a timer, since those wait for the end of an alert.
void FirstMenu::popUpAfterwards() {
    runLoop.schedule(0, false, "firstTime", [this] {
        if (windows.isAnyShown()) return;
        windows.onHidden({});
        item.popUpMenu();
    });
}
