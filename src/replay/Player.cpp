#include "replay/Player.h"

#include "replay/Steps.h"

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

void Player::playSteps() {
    while (const auto step = scenario.next())
        playStep(*this, *step);
}

} // namespace palisor::replay
