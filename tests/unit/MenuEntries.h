#pragma once

#include "unit/Program.h"

#include <stdexcept>

namespace palisor {

inline const platform::Value on{true}, off{false};

/// The entry with that title, anywhere in the menu.
inline MenuItem& entry(Program& program, std::string_view title) {
    for (const auto& item : program.app.mainMenu->items)
        if (item->title == title) return *item;
    throw std::out_of_range(std::string(title));
}

inline void choose(Program& program, std::string_view title) {
    program.platform.statusItem.menuTarget()->chosen(entry(program, title));
}

} // namespace palisor
