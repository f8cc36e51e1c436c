#pragma once

#include "platform/Displays.h"

#include <functional>
#include <vector>

namespace platform::memory {

/// Screens without pictures. The screen at a place of the list is the same one whatever its frame,
/// so a screen has gone when the list has become shorter.
class Displays final : public platform::Displays {
  public:
    std::span<const Screen> screens() const override { return attached; }
    ScreenId mainScreen() const override { return main; }
    void onChange(std::function<void()> changed) override { handler = std::move(changed); }

    /// Replaces the list, bottom-left frames, and says so to nobody. `mainIndex` is of the list,
    /// and ignored when that is empty. The screens are called "Screen-1", "Screen-2", ...
    void replace(const std::vector<Rect>& frames, std::size_t mainIndex = 0);

    void setScale(std::size_t index, double scale) { attached.at(index).scale = scale; }

    /// Tells the program that the list has changed.
    void notify() const;

    /// Replaces and tells, as plugging does.
    void change(const std::vector<Rect>& frames, std::size_t mainIndex = 0);

  private:
    std::vector<Screen> attached;
    ScreenId main = ScreenId::none;
    std::function<void()> handler;
};

} // namespace platform::memory
