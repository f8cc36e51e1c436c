#include "platform/kwin/keys/HotKeys.h"

#include <algorithm>
#include <utility>

namespace platform::kwin {

namespace {

constexpr const char* service = "org.kde.kglobalaccel";
constexpr const char* path = "/kglobalaccel";
constexpr const char* interface = "org.kde.KGlobalAccel";
constexpr const char* component = "kwin"; // of every script

} // namespace

HotKeys::HotKeys(Script& inside, bus::Link& x, Log& writer, wayland::KeyboardSeat& keys,
                 wayland::KeyTaking& recorded, Settings& store, Later afterwards,
                 std::string ownersName)
    : ClaimedHotKeys(keys, recorded, store, std::move(afterwards)),
      script(inside),
      link(x),
      log(writer),
      owner(std::move(ownersName)) {
    script.onLoad([this] {
        for (const auto& [sequence, bound] : claims)
            claimOne(sequence);
    });
    script.onTold("key", [this](const JsonValue::List& words) {
        const auto* sequence = words.empty() ? nullptr : std::get_if<std::string>(&words[0].held);
        const auto found = sequence ? claims.find(*sequence) : claims.end();
        if (found != claims.end()) later(found->second.claim.action);
    });
}

HotKeys::~HotKeys() {
    script.onLoad({});
    script.onTold("key", {});
}

std::string HotKeys::sequenceOf(const Shortcut& shortcut) const {
    constexpr std::pair<std::uint32_t, const char*> modifiers[] = {{Shortcut::control, "Ctrl+"},
                                                                   {Shortcut::option, "Alt+"},
                                                                   {Shortcut::shift, "Shift+"},
                                                                   {Shortcut::command, "Meta+"}};
    constexpr std::pair<const char*, const char*> names[] = {{"Page Up", "PgUp"},
                                                             {"Page Down", "PgDown"},
                                                             {"Insert", "Ins"},
                                                             {"Delete", "Del"},
                                                             {"Mute", "Volume Mute"}};
    std::string text;
    for (const auto& [flag, word] : modifiers)
        if (shortcut.modifierFlags & flag) text += word;
    std::string key = keyCodeString(shortcut);
    for (const auto& [ours, theirs] : names)
        if (key == ours) key = theirs;
    if (key.starts_with("Num ")) key[3] = '+';
    return text + key;
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    std::map<std::string, Bound> before = std::exchange(claims, {});
    std::vector<std::string> added;
    for (const Claim& one : wanted) {
        const std::string sequence = sequenceOf(one.shortcut);
        auto old = before.extract(sequence);
        if (old) {
            old.mapped().claim = one;
            claims.insert(std::move(old)); // where it was, for who answers
        } else if (claims.try_emplace(sequence, Bound{*this, one}).second) {
            added.push_back(sequence);
        }
    }
    script.setNeeded(!claims.empty());
    if (!before.empty()) return script.reload();
    for (const std::string& sequence : added)
        claimOne(sequence);
}

void HotKeys::claimOne(const std::string& sequence) {
    script.run("key", {owner + " " + sequence, sequence}, [this, sequence] { ask(sequence); });
}

// By what the script calls it: a component, its action, and both for people.
void HotKeys::ask(const std::string& sequence) {
    const auto found = claims.find(sequence);
    if (found == claims.end() || !link.bus()) return;
    const std::string action = owner + " " + sequence;
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, service, path, interface, "shortcutKeys",
                                   keysTold, &found->second, "as", 4, component, action.c_str(), "",
                                   "");
    found->second.question.reset(made);
    link.settle();
}

// Up to 6.3 a combination that somebody else has is no key of ours; later it is both's.
int HotKeys::keysTold(sd_bus_message* reply, void* own, sd_bus_error*) {
    auto& bound = *static_cast<Bound*>(own);
    if (sd_bus_message_is_method_error(reply, nullptr) != 0) return 0;
    std::int32_t key = 0;
    if (sd_bus_message_enter_container(reply, 'a', "(ai)") < 0) return 0;
    while (key == 0 && sd_bus_message_enter_container(reply, 'r', "ai") > 0) {
        const void* keys = nullptr;
        std::size_t size = 0;
        if (sd_bus_message_read_array(reply, 'i', &keys, &size) < 0) return 0;
        if (size >= sizeof key) key = *static_cast<const std::int32_t*>(keys);
        sd_bus_message_exit_container(reply);
    }
    if (key == 0)
        bound.owner.answered(bound, true);
    else
        bound.owner.askHolders(bound, key);
    return 0;
}

void HotKeys::askHolders(Bound& bound, std::int32_t key) {
    constexpr int exactly = 0;
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, service, path, interface,
                                   "globalShortcutsByKey", holdersTold, &bound, "(ai)(i)", 4, key,
                                   0, 0, 0, exactly);
    bound.question.reset(made);
    link.settle();
}

// The name of an action, of its component and of their context, each with one for people. A
// product's script may have gone and left the action there.
int HotKeys::holdersTold(sd_bus_message* reply, void* own, sd_bus_error*) {
    auto& bound = *static_cast<Bound*>(own);
    const std::string ours = " " + bound.owner.sequenceOf(bound.claim.shortcut);
    if (sd_bus_message_is_method_error(reply, nullptr) != 0 ||
        sd_bus_message_enter_container(reply, 'a', "(ssssssaiai)") < 0)
        return 0;
    bool isTaken = false;
    while (sd_bus_message_enter_container(reply, 'r', "ssssssaiai") > 0) {
        const char *action = nullptr, *title = nullptr, *holder = nullptr;
        if (sd_bus_message_read(reply, "sss", &action, &title, &holder) < 0 ||
            sd_bus_message_skip(reply, "sssaiai") < 0)
            return 0;
        isTaken = isTaken || std::string_view(holder) != component ||
                  !std::string_view(action).ends_with(ours);
        sd_bus_message_exit_container(reply);
    }
    bound.owner.answered(bound, isTaken);
    return 0;
}

void HotKeys::answered(Bound& bound, bool isTaken) {
    if (std::exchange(bound.isTaken, isTaken) || !isTaken) return;
    later([this, shortcut = bound.claim.shortcut] {
        log.write("the compositor gives the shortcut " + modifierFlagsString(shortcut) +
                  keyCodeString(shortcut) + " to somebody else, and it does nothing here");
        if (tellTaken) tellTaken(shortcut);
    });
}

bool HotKeys::isTaken(const Shortcut& shortcut) const {
    return std::ranges::any_of(claims, [&](const auto& one) {
        return one.second.isTaken && one.second.claim.shortcut == shortcut;
    });
}

} // namespace platform::kwin
