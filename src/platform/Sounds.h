#pragma once

#include <string_view>

namespace platform {

/// Sounds of the bundle. Main thread.
class Sounds {
  public:
    virtual ~Sounds() = default;

    /// Starts the named sound and returns; volume from 0 to 1. An unknown name is ignored.
    virtual void play(std::string_view name, double volume) = 0;
};

} // namespace platform
