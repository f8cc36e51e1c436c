#pragma once

#include "platform/Windows.h"
#include "platform/memory/Effects.h"

#include <vector>

namespace platform::memory {

class MemoryWindow;

class Windows final : public platform::Windows {
  public:
    explicit Windows(Effects& stream) : effects(stream) {}

    std::unique_ptr<Window> create(const WindowStyle& style) override;

    /// The windows on screen in the order of their ids, each as the JSON members that tell of it.
    std::vector<std::string> shown() const;

  private:
    friend class MemoryWindow;

    Effects& effects;
    WindowId lastId = 0;
    std::vector<const MemoryWindow*> visible;
};

} // namespace platform::memory
