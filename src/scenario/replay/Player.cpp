#include "scenario/replay/Player.h"

#include "scenario/replay/steps/Steps.h"

namespace palisor::replay {

namespace {

/// The scenario has ended inside a run loop that the program runs itself: what follows in the
/// program never happens.
struct ScenarioEnded {};

} // namespace

Player::Player(Scenario& steps, Output& printer) : output(printer), scenario(steps) {
    setUp(platform);
    platform.effects.setSink(
        [this](const platform::memory::Effect& effect) { output.effect(effect); });
    platform.alerts.setWhileOpen([this](const platform::Alert& alert) {
        if (!alert.accessory.empty()) recordShortcut();
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

void Player::recordShortcut() {
    const bool again = popups++ != 0;
    if (facts.recordings.empty()) {
        // A program that asks until it gets one would ask for ever.
        if (again) throw StepError("the shortcut popup is shown again with nothing to record");
        return;
    }
    const auto recorded = facts.recordings.front();
    facts.recordings.pop_front();
    if (recorded)
        platform.settings.set("customShortcut", recorded->toValue());
    else
        platform.settings.remove("customShortcut");
}

void Player::playSteps() {
    while (const auto step = scenario.next()) {
        popups = 0;
        playStep(*this, *step);
        platform.runLoop.performPending();
    }
}

} // namespace palisor::replay
