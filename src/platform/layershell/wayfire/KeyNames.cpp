#include "platform/layershell/wayfire/KeyNames.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <linux/input-event-codes.h>

namespace platform::layershell::wayfire {

namespace {

// What the kernel does not call as people do.
constexpr std::pair<std::uint8_t, const char*> otherwise[] = {{KEY_102ND, "102ND"},
                                                              {KEY_EQUAL, "EQUAL"},
                                                              {KEY_MINUS, "MINUS"},
                                                              {KEY_RIGHTBRACE, "RIGHTBRACE"},
                                                              {KEY_LEFTBRACE, "LEFTBRACE"},
                                                              {KEY_APOSTROPHE, "APOSTROPHE"},
                                                              {KEY_SEMICOLON, "SEMICOLON"},
                                                              {KEY_BACKSLASH, "BACKSLASH"},
                                                              {KEY_COMMA, "COMMA"},
                                                              {KEY_SLASH, "SLASH"},
                                                              {KEY_DOT, "DOT"},
                                                              {KEY_GRAVE, "GRAVE"},
                                                              {KEY_YEN, "YEN"},
                                                              {KEY_RO, "RO"},
                                                              {KEY_ENTER, "ENTER"},
                                                              {KEY_COMPOSE, "COMPOSE"},
                                                              {KEY_KPDOT, "KPDOT"},
                                                              {KEY_KPASTERISK, "KPASTERISK"},
                                                              {KEY_KPPLUS, "KPPLUS"},
                                                              {KEY_KPSLASH, "KPSLASH"},
                                                              {KEY_KPENTER, "KPENTER"},
                                                              {KEY_KPMINUS, "KPMINUS"},
                                                              {KEY_KPEQUAL, "KPEQUAL"},
                                                              {KEY_KPJPCOMMA, "KPJPCOMMA"}};

std::string kernelName(const session::PhysicalKey& key) {
    const auto known =
        std::ranges::find(otherwise, key.evdevCode, [](const auto& row) { return row.first; });
    if (known != std::end(otherwise)) return known->second;
    std::string name;
    constexpr std::string_view pad = "Num ";
    const bool isOnPad = key.name.starts_with(pad);
    if (isOnPad) name = "KP";
    for (const char c : isOnPad ? key.name.substr(pad.size()) : key.name)
        if (c != ' ') name += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return name;
}

} // namespace

std::string bindingOf(const Shortcut& shortcut) {
    const auto* const key = session::physicalKey(shortcut.keyCode);
    if (!key) return {};
    constexpr std::pair<std::uint32_t, const char*> words[] = {{Shortcut::control, "<ctrl> "},
                                                               {Shortcut::option, "<alt> "},
                                                               {Shortcut::shift, "<shift> "},
                                                               {Shortcut::command, "<super> "}};
    std::string text;
    for (const auto& [flag, word] : words)
        if (shortcut.modifierFlags & flag) text += word;
    return text + "KEY_" + kernelName(*key);
}

} // namespace platform::layershell::wayfire
