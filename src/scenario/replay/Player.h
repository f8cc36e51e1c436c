#pragma once

#include "app/AppDelegate.h"
#include "platform/memory/MemoryPlatform.h"
#include "scenario/replay/Output.h"
#include "scenario/replay/Scenario.h"

#include <deque>

namespace palisor::replay {

/// Plays one scenario: owns the virtual desktop and the program on it.
class Player {
  public:
    /// Both must outlive the player.
    Player(Scenario& steps, Output& printer);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// Plays every step, until the scenario or the program ends. Throws StepError for the step on
    /// the scenario's current line, and OutputError.
    void play();

    /// What the user enters when next asked for a shortcut, nothing to clear it; before the launch
    /// it is stored at once.
    void enter(const std::optional<platform::Shortcut>& shortcut);

    platform::memory::MemoryPlatform platform;
    const platform::Platform services{platform.services()};
    AppDelegate app{services};
    Output& output;
    bool launched = false;

  private:
    void playSteps();
    void answerShortcutPopup();

    Scenario& scenario;
    std::deque<std::optional<platform::Shortcut>> shortcuts; ///< to be entered
    int popups = 0; ///< shortcut popups that the step at hand has shown
};

} // namespace palisor::replay
