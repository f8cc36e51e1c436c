#include "platform/HotKeys.h"

namespace platform {

std::optional<Shortcut> Shortcut::fromValue(const Value* value) {
    const auto* stored = value == nullptr ? nullptr : std::get_if<Dictionary>(&value->held);
    if (stored == nullptr) return std::nullopt;
    const auto number = [stored](std::string_view key) -> const std::int64_t* {
        const auto found = stored->find(key);
        return found == stored->end() ? nullptr : std::get_if<std::int64_t>(&found->second.held);
    };
    const std::int64_t* keyCode = number("keyCode");
    const std::int64_t* flags = number("modifierFlags");
    constexpr std::int64_t mostKeyCode = 0xffff, mostFlags = 0xffffffff;
    if (keyCode == nullptr || flags == nullptr || *keyCode < 0 || *keyCode > mostKeyCode ||
        *flags < 0 || *flags > mostFlags)
        return std::nullopt;
    return Shortcut{static_cast<std::uint16_t>(*keyCode), static_cast<std::uint32_t>(*flags)};
}

Value Shortcut::toValue() const {
    return Value{Dictionary{{"keyCode", Value{std::int64_t{keyCode}}},
                            {"modifierFlags", Value{std::int64_t{modifierFlags}}}}};
}

} // namespace platform
