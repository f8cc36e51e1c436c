#include "app/AppDelegate.h"
#include "app/Control.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

// Settings as text in the user's units, and what each must be to be taken.

namespace palisor::control {

using platform::Shortcut;
using platform::Value;

namespace {

std::string lowered(std::string_view text) {
    std::string low(text);
    std::ranges::transform(low, low.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return low;
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// ---- from what is stored ------------------------------------------------------------------------

std::string shown(const AppDelegate& app, const Setting& setting, const Value* stored) {
    if (setting.kind != Setting::Kind::shortcut) return setting.shown(stored);
    const auto combination = Shortcut::fromValue(stored);
    if (!combination) return "none";
    const auto& hotKeys = app.services.hotKeys;
    return hotKeys.modifierFlagsString(*combination) + hotKeys.keyCodeString(*combination);
}

SettingState stateOf(const AppDelegate& app, const Setting& setting) {
    SettingState seen{.setting = &setting,
                      .value = shown(app, setting, app.services.settings.object(setting.key))};
    seen.isDefault = seen.value == setting.shownStandard(app.IDApp());
    return seen;
}

// ---- to what is stored --------------------------------------------------------------------------

/// What is to be stored, nothing for the key's removal.
struct Parsed {
    Refusal refusal = Refusal::none;
    std::optional<Value> value{};
};

Parsed refused(Refusal why) {
    return {.refusal = why};
}

Parsed parsedFlag(const Setting& setting, std::string_view text) {
    constexpr std::array on = std::to_array<std::string_view>({"on", "yes", "true", "1"});
    constexpr std::array off = std::to_array<std::string_view>({"off", "no", "false", "0"});
    const std::string word = lowered(text);
    const bool isOn = std::ranges::find(on, word) != on.end();
    if (!isOn && std::ranges::find(off, word) == off.end()) return refused(Refusal::wrongType);
    const bool stored = isOn != setting.inverted;
    if (setting.form == Setting::Form::string) return {.value = Value{stored ? "1" : "0"}};
    return {.value = Value{stored}};
}

Parsed parsedNumber(const Setting& setting, std::string_view text) {
    const bool isPercent = setting.unit == Setting::Unit::percent;
    if ((isPercent && text.ends_with('%')) ||
        (setting.unit == Setting::Unit::seconds && text.ends_with('s')))
        text = withoutBlanks(text.substr(0, text.size() - 1));
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::result_out_of_range) return refused(Refusal::outOfRange);
    if (error != std::errc() || rest != end) return refused(Refusal::wrongType);
    const auto [least, most] = setting.range();
    if (number < least || number > most) return refused(Refusal::outOfRange);
    if (isPercent) number = std::lround(static_cast<double>(number) * setting.most / most);
    if (setting.form == Setting::Form::string) return {.value = Value{std::to_string(number)}};
    return {.value = Value{number}};
}

Parsed parsedText(std::string_view text) {
    constexpr std::size_t longest = 200;
    if (text.size() > longest) return refused(Refusal::outOfRange);
    return {.value = Value{std::string(text)}};
}

/// As the recorder judges one that is pressed.
Parsed parsedShortcut(const AppDelegate& app, const Setting& setting, std::string_view text) {
    if (text.empty() || lowered(text) == "none") return {};
    const auto combination = platform::shortcutNamed(text, app.services.hotKeys);
    if (!combination) return refused(Refusal::wrongType);
    if (combination->isTyping()) return refused(Refusal::needsModifier);
    const Value value = combination->toValue();
    const Value* const present = app.services.settings.object(setting.key);
    const bool isNew = present == nullptr || *present != value;
    if (isNew && app.services.hotKeys.obstacleTo(*combination) != platform::HotKeys::Obstacle::none)
        return refused(Refusal::shortcutTaken);
    return {.value = value};
}

Parsed parsed(const AppDelegate& app, const Setting& setting, std::string_view text) {
    text = withoutBlanks(text);
    switch (setting.kind) {
    case Setting::Kind::flag:
        return parsedFlag(setting, text);
    case Setting::Kind::number:
        return parsedNumber(setting, text);
    case Setting::Kind::text:
        return parsedText(text);
    case Setting::Kind::shortcut:
        return parsedShortcut(app, setting, text);
    }
    return refused(Refusal::wrongType);
}

} // namespace

std::vector<SettingState> settings(const AppDelegate& app) {
    std::vector<SettingState> all;
    for (const Setting& setting : settingsTable())
        if (setting.products.contains(app.IDApp())) all.push_back(stateOf(app, setting));
    return all;
}

std::optional<SettingState> setting(const AppDelegate& app, std::string_view keyOrName) {
    const Setting* const found = findSetting(keyOrName);
    if (found == nullptr || !found->products.contains(app.IDApp())) return std::nullopt;
    return stateOf(app, *found);
}

Refusal setSetting(AppDelegate& app, std::string_view keyOrName, std::string_view value) {
    const Setting* const found = findSetting(keyOrName);
    if (found == nullptr) return Refusal::unknownKey;
    if (!found->products.contains(app.IDApp())) return Refusal::notOfThisProduct;
    auto [refusal, stored] = parsed(app, *found, value);
    if (refusal != Refusal::none) return refusal;
    return app.changeSetting(found->key, std::move(stored)) ? Refusal::none
                                                            : Refusal::shortcutNeeded;
}

Refusal resetSetting(AppDelegate& app, std::string_view keyOrName) {
    const Setting* const found = findSetting(keyOrName);
    if (found == nullptr) return Refusal::unknownKey;
    if (!found->products.contains(app.IDApp())) return Refusal::notOfThisProduct;
    // What the first run writes is registered nowhere.
    std::optional<Value> standard;
    if (found->origin == Setting::Origin::firstRun) standard = found->standardValue();
    return app.changeSetting(found->key, std::move(standard)) ? Refusal::none
                                                              : Refusal::shortcutNeeded;
}

} // namespace palisor::control
