#include "testing/desktop/Settings.h"

#include <algorithm>

namespace desktop {

std::string flag(bool on) {
    return on ? "<true/>" : "<false/>";
}

std::string text(const std::string& value) {
    return "<string>" + value + "</string>";
}

std::string number(int value) {
    return "<integer>" + std::to_string(value) + "</integer>";
}

std::string shortcut(int keyCode, int modifierFlags) {
    return "<dict>" + entry("keyCode", number(keyCode)) +
           entry("modifierFlags", number(modifierFlags)) + "</dict>";
}

Entries pastTheFirstStart() {
    return {{"PRIMOACCESSO", text("1")},
            {"PRIMOACCESSOCONSLIDER", text("1")},
            {"CHECK_0", text("1")},
            {"CHECK_1", text("0")},
            {"RECOMMENDAUTOLOGIN", text("1")},
            {"customShortcut", shortcut(40, 0x140000)}};
}

Entries armedSides(std::initializer_list<int> sides) {
    Entries entries;
    for (int side = 1; side <= 4; ++side) {
        const std::string number = std::to_string(side);
        entries["BUTLATO" + number] = flag(std::ranges::find(sides, side) != sides.end());
        entries["BUTANGOLO" + number] = flag(true);
    }
    return entries;
}

std::string entry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key>" + value;
}

std::string propertyList(const Entries& entries) {
    std::string list = R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)";
    for (const auto& [key, value] : entries)
        if (!value.empty()) list += entry(key, value);
    return list + "</dict></plist>\n";
}

} // namespace desktop
