#include "scenario/replay/Player.h"

#include "app/Keys.h"
#include "scenario/replay/steps/Steps.h"
#include "strings/Strings.h"

namespace palisor::replay {

namespace {

/// The scenario has ended inside a run loop that the program runs itself: what follows in the
/// program never happens.
struct ScenarioEnded {};

/// Makes the platform what it is at the start of every scenario.
void setUp(platform::memory::MemoryPlatform& platform) {
    constexpr std::pair<const char*, const char*> information[] = {
        {"CFBundleShortVersionString", "1.0"},
        {"CFBundleDisplayName", "Palisor"},
        {"CFBundleIdentifier", "com.tamberlo.palisor"},
        {"MakerHost", "service.tamberlo.invalid"},
        {"MakerSite", "https://www.tamberlo.invalid"},
        {"SocialPage", "https://social.tamberlo.invalid/tamberlo"},
        {"StoreWebPage", "https://store.tamberlo.invalid/app/%@"},
        {"StorePage", "store://store.tamberlo.invalid/app/%@?mt=12"},
        {"MobileStorePage", "mobilestore://store.tamberlo.invalid/app/%@"},
        {"SupportMail", "support@tamberlo.invalid"}};
    platform.bundle.set("IDApp", platform::Value{std::int64_t{8}});
    for (const auto& [key, text] : information)
        platform.bundle.set(key, platform::Value{text});
    platform.bundle.setLanguages({"en"});
    platform.bundle.setStrings(strings::lookUp);
    platform.system.setVersion({10, 15, 7});
    platform.displays.replace({{0, 0, 1920, 1080}, {1920, 0, 1920, 1080}});
}

} // namespace

Player::Player(Scenario& steps, Output& printer) : output(printer), scenario(steps) {
    setUp(platform);
    enter(platform::Shortcut{40, 1310720});
    platform.effects.setSink(
        [this](const platform::memory::Effect& effect) { output.effect(effect); });
    platform.alerts.setWhileOpen([this](const platform::Alert& alert) {
        if (!alert.accessory.empty()) answerShortcutPopup();
    });
    platform.runLoop.setWhileRunning([this] {
        playSteps();
        throw ScenarioEnded{};
    });
}

Player::~Player() {
    // Taking the program apart is not part of the scenario.
    platform.effects.setSink({});
}

void Player::play() {
    try {
        playSteps();
    } catch (const ScenarioEnded&) {
    } catch (const platform::memory::ProgramEnded&) {
    }
}

void Player::enter(const std::optional<platform::Shortcut>& shortcut) {
    if (launched)
        shortcuts.push_back(shortcut);
    else
        platform.settings.edit(keys::customShortcut,
                               shortcut ? std::optional(shortcut->toValue()) : std::nullopt);
}

void Player::answerShortcutPopup() {
    const bool again = popups++ != 0;
    if (shortcuts.empty()) {
        // A program that asks until it gets one would ask for ever.
        if (again) throw StepError("the shortcut popup is shown again with nothing to record");
        return;
    }
    const auto entered = shortcuts.front();
    shortcuts.pop_front();
    if (entered)
        platform.settings.set(keys::customShortcut, entered->toValue());
    else
        platform.settings.remove(keys::customShortcut);
}

void Player::playSteps() {
    while (const auto step = scenario.next()) {
        popups = 0;
        playStep(*this, *step);
        platform.runLoop.performPending();
    }
}

} // namespace palisor::replay
