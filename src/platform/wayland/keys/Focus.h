#pragma once

#include "platform/Focus.h"

namespace platform::wayland {

/// The compositor gives the keyboard back by itself when a window of the program closes, and its
/// layers take none.
class Focus final : public platform::Focus {
  public:
    void activateFrontmostApplication() override {}
    void openNothingWith(const std::string&) override {}
};

} // namespace platform::wayland
