#include "platform/gnome/keys/HotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace platform::gnome {

namespace {

// By the key's place, whatever the layout prints on it.
std::string acceleratorOf(const Shortcut& shortcut) {
    constexpr std::pair<std::uint32_t, const char*> words[] = {{Shortcut::control, "<Control>"},
                                                               {Shortcut::option, "<Alt>"},
                                                               {Shortcut::shift, "<Shift>"},
                                                               {Shortcut::command, "<Super>"}};
    std::string text;
    for (const auto& [flag, word] : words)
        if (shortcut.modifierFlags & flag) text += word;
    char code[8] = {};
    const int keycode = session::physicalKey(shortcut.keyCode)->keycode();
    (void)std::snprintf(code, sizeof code, "0x%02x", static_cast<unsigned>(keycode));
    return text + code;
}

} // namespace

HotKeys::HotKeys(Hand& extension, Log& writer, wayland::KeyboardSeat& keys,
                 wayland::KeyTaking& recorded, Settings& store, Later afterwards)
    : ClaimedHotKeys(keys, recorded, store, std::move(afterwards)), hand(extension), log(writer) {
    hand.onPressed([this](std::uint32_t number) {
        const auto found = std::ranges::find(bound, number, &Bound::number);
        if (found != bound.end()) later(found->claim.action);
    });
    hand.onFresh(this, [this](bool) {
        for (const Bound& one : bound)
            ask(one);
    });
}

HotKeys::~HotKeys() {
    hand.onFresh(this, {});
    hand.onPressed({});
    for (const Bound& one : bound)
        hand.ungrab(one.number);
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    std::vector<Bound> before = std::exchange(bound, {});
    const std::uint32_t known = lastNumber;
    for (const Claim& claim : wanted) {
        const auto old = std::ranges::find(before, claim.shortcut,
                                           [](const Bound& one) { return one.claim.shortcut; });
        if (old != before.end()) {
            bound.push_back({claim, old->number, old->isTaken});
            before.erase(old);
        } else {
            bound.push_back({claim, ++lastNumber, false});
        }
    }
    for (const Bound& one : before)
        hand.ungrab(one.number);
    for (const Bound& one : bound)
        if (one.number > known) ask(one);
}

void HotKeys::ask(const Bound& one) {
    hand.grab(one.number, acceleratorOf(one.claim.shortcut),
              [this, number = one.number](bool granted) { answered(number, granted); });
}

void HotKeys::answered(std::uint32_t number, bool granted) {
    const auto found = std::ranges::find(bound, number, &Bound::number);
    if (found == bound.end() || std::exchange(found->isTaken, !granted) == !granted) return;
    if (granted) return;
    const Shortcut shortcut = found->claim.shortcut;
    later([this, shortcut] {
        log.write("the shortcut " + modifierFlagsString(shortcut) + keyCodeString(shortcut) +
                  " is the shell's own or another program's, and does nothing here");
        if (tellTaken) tellTaken(shortcut);
    });
}

bool HotKeys::isTaken(const Shortcut& shortcut) const {
    return std::ranges::any_of(
        bound, [&](const Bound& one) { return one.isTaken && one.claim.shortcut == shortcut; });
}

} // namespace platform::gnome
