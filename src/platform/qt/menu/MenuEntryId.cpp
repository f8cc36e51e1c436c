#include "platform/qt/menu/MenuEntryId.h"

#include <utility>

namespace platform::qt {

namespace {

const std::string& actionOf(const MenuItem& item) {
    if (const auto* view = std::get_if<SliderView>(&item.view)) return view->slider.action;
    return item.action;
}

bool isIt(const MenuItem& item, const MenuEntryId& id) {
    return !item.separator && item.title == id.title && actionOf(item) == id.action;
}

MenuItem* atPath(Menu& menu, const std::vector<std::size_t>& path) {
    Menu* level = &menu;
    MenuItem* found = nullptr;
    for (const std::size_t place : path) {
        if (level == nullptr || place >= level->items.size()) return nullptr;
        found = level->items[place].get();
        level = found->submenu.get();
    }
    return found;
}

MenuItem* search(Menu& menu, const MenuEntryId& id) {
    for (const auto& item : menu.items) {
        if (isIt(*item, id)) return item.get();
        if (item->submenu)
            if (MenuItem* found = search(*item->submenu, id)) return found;
    }
    return nullptr;
}

} // namespace

MenuEntryId identify(const MenuItem& item, std::vector<std::size_t> path) {
    return {std::move(path), item.title, actionOf(item)};
}

MenuItem* findEntry(Menu& menu, const MenuEntryId& id) {
    MenuItem* const there = atPath(menu, id.path);
    return there != nullptr && isIt(*there, id) ? there : search(menu, id);
}

} // namespace platform::qt
