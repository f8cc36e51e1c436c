#pragma once

#include "platform/Menu.h"

#include <cstddef>
#include <string>
#include <vector>

namespace platform::qt {

/// Tells an entry apart after its menu has been rebuilt, which frees every item.
struct MenuEntryId {
    std::vector<std::size_t> path; ///< places in the menu and its submenus, outermost first
    std::string title;
    std::string action; ///< of the entry, or of its slider
};

/// `path` is where `item` stands.
MenuEntryId identify(const MenuItem& item, std::vector<std::size_t> path);

/// The entry as it stands now: at its old place, or else the first with that title and action.
/// Null when there is none. The result is valid until the menu is rebuilt.
MenuItem* findEntry(Menu& menu, const MenuEntryId& id);

} // namespace platform::qt
