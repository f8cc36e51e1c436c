#pragma once

#include "platform/Focus.h"
#include "platform/Keyboard.h"
#include "platform/kwin/script/Script.h"

namespace platform::kwin {

/// Control with an arrow goes to the next virtual desktop; nothing else can be typed.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Script& inside, Log& writer) : script(inside), log(writer) {}

    void postKey(std::uint16_t key, bool down, std::uint32_t flags) override;

  private:
    Script& script;
    Log& log;
    bool told = false;
};

/// The compositor gives the keyboard back by itself when a window of the program closes, and its
/// layers take none.
class Focus final : public platform::Focus {
  public:
    void activateFrontmostApplication() override {}
    void openNothingWith(const std::string&) override {}
};

} // namespace platform::kwin
