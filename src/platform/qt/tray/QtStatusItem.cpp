#include "platform/qt/tray/QtStatusItem.h"

#include "platform/qt/alerts/QtAlerts.h"
#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/menu/LayeredPopups.h"
#include "platform/qt/tray/TrayIcon.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

// Every call into the target may rebuild the menu, and so may anything that happens while it is
// open. Therefore entries are looked up anew for each call.

namespace platform::qt {

namespace {

EventType pressOf(int buttonNumber) {
    switch (buttonNumber) {
    case 0:
        return EventType::leftMouseDown;
    case 1:
        return EventType::rightMouseDown;
    default:
        return EventType::otherMouseDown;
    }
}

/// Nothing where the entry is gone, or in a submenu.
std::optional<std::size_t> placeOf(Menu& menu, const MenuEntryId& entry) {
    const auto found =
        std::ranges::find(menu.items, findEntry(menu, entry), &std::unique_ptr<MenuItem>::get);
    if (found == menu.items.end()) return {};
    return static_cast<std::size_t>(found - menu.items.begin());
}

} // namespace

QtStatusItem::QtStatusItem(QtRunLoop& loop, QtApplication& app, const Pictures* icons,
                           TrayIcon* trayIcon, PopupLayer* layer)
    : runLoop(loop), application(app), tray(trayIcon), popups(layer) {
    listener.icons = icons;
    listener.moved = [this](const MenuEntryId& entry, double value, EventType how) {
        sliderMoved(entry, value, how);
    };
    listener.clicked = [this](CheckBox& box) { boxClicked(box); };
}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::create(Menu& newMenu, MenuTarget& newTarget) {
    menu = &newMenu;
    target = &newTarget;
    exported.emplace(
        newMenu, ExportedMenu::Handlers{.chosen =
                                            [this](const MenuEntryId& entry) {
                                                if (QtAlerts::bringToFront()) return;
                                                const QtApplication::EventScope event(
                                                    application, {EventType::leftMouseDown, 0});
                                                choose(entry);
                                            },
                                        .moved =
                                            [this](const MenuEntryId& entry, double value) {
                                                sliderMoved(entry, value, EventType::leftMouseUp);
                                            },
                                        .clicked = [this](CheckBox& box) { boxClicked(box); }});
    if (tray != nullptr) tray->show([this](int button) { clicked(button); }, &*exported);
}

void QtStatusItem::setImage(std::string_view name, bool isTemplate) {
    if (tray != nullptr) tray->setImage({std::string(name), isTemplate});
    // Every menu that is built sets it.
    if (exported) exported->changed();
}

void QtStatusItem::setToolTip(std::string_view text) {
    toolTip = text;
    if (tray != nullptr) tray->setToolTip(toolTip);
}

// The program opens it again for what the chosen entry has become.
void QtStatusItem::popUpMenu() {
    popUp(byKey);
}

void QtStatusItem::popUp(std::optional<MenuEntryId> beginning) {
    if (menu == nullptr || open != nullptr || menu->items.empty()) return;
    std::optional<MenuEntryId> chosen;
    {
        const QtRunLoop::ModalScope modal(runLoop);
        MenuPopup popup(*menu, listener);
        popup.setAccessibleName(QString::fromStdString(toolTip));
        if (beginning)
            if (const auto place = placeOf(*menu, *beginning)) popup.beginAt(*place);
        open = &popup;
        std::optional<LayeredPopups> layered;
        if (popups != nullptr) layered.emplace(*popups, popup);
        const auto corner = cornerOf(popup);
        chosen =
            corner ? popup.runAt(*corner) : popup.run(layered ? layered->place() : QCursor::pos());
        open = nullptr;
        byKey = popup.wasChosenByKey() ? chosen : std::nullopt;
    }
    if (chosen) choose(*chosen);
}

std::optional<QPoint> QtStatusItem::cornerOf(MenuPopup& popup) const {
    const auto anchor = tray != nullptr ? tray->menuAnchor() : std::nullopt;
    const QScreen* const screen =
        anchor ? QGuiApplication::screenAt(anchor->item.center()) : nullptr;
    if (screen == nullptr) return {};
    popup.ensurePolished();
    return menuCorner(popup.sizeHint(), *anchor, screen->geometry(), popup.layoutDirection());
}

// No longer there, or greyed meanwhile: then it was not what the user saw.
void QtStatusItem::choose(const MenuEntryId& entry) {
    MenuItem* const item = findEntry(*menu, entry);
    if (item != nullptr && !item->greyed()) target->chosen(*item);
}

void QtStatusItem::labelChanged(const Label& label) {
    if (open != nullptr) open->showLabel(label);
    if (exported) exported->changed();
}

void QtStatusItem::clicked(int buttonNumber) {
    if (menu == nullptr || QtAlerts::bringToFront()) return;
    if (open != nullptr) {
        open->dismiss();
        return;
    }
    if (buttonNumber == 0 && QtApplication::restoreMinimised()) return;
    const QtApplication::EventScope event(application, {pressOf(buttonNumber), buttonNumber});
    target->menuWillOpen(*menu);
    popUp({});
}

void QtStatusItem::activate() {
    if (QtAlerts::bringToFront() || QtApplication::restoreMinimised()) return;
    if (tray == nullptr || !tray->showMenuAtHost()) popUp({});
}

void QtStatusItem::sliderMoved(const MenuEntryId& entry, double value, EventType how) {
    MenuItem* const item = findEntry(*menu, entry);
    if (item == nullptr) return;
    auto* const view = std::get_if<SliderView>(&item->view);
    if (view == nullptr) return;
    const QtApplication::EventScope event(application, {how, 0});
    view->slider.value = value;
    target->moved(view->slider);
}

void QtStatusItem::boxClicked(CheckBox& box) {
    const QtApplication::EventScope event(application, {EventType::leftMouseUp, 0});
    target->clicked(box);
}

} // namespace platform::qt
