#pragma once

#include "platform/Windows.h"
#include "platform/memory/Effects.h"

#include <string_view>
#include <vector>

namespace platform::memory {

/// What effects and snapshots tell of a window of any kind.
struct WindowState {
    WindowKind kind = WindowKind::dark;
    Rect frame{};
    float alpha = 1;
    int level = 0;
    std::uint32_t behaviour = 0;
    bool ignoresMouse = false;
    std::string_view background{}; ///< empty for none of its own
    std::string image{};
    WindowId id = 0;
};

class Windows final : public platform::Windows {
  public:
    explicit Windows(Effects& stream) : effects(stream) {}

    std::unique_ptr<Window> create(const WindowStyle& style) override;

    /// Only remembered: scenarios tell of what is on screen.
    void letMarkersBeSeen(bool seen) override { markersSeen = seen; }
    bool areMarkersSeen() const { return markersSeen; }

    /// The windows on screen in the order of their ids, each as an object.
    std::vector<json::Raw> shown() const;

    // For windows of every kind; what is shown must be hidden, or forgotten without an effect,
    // before it goes.
    bool isShown(const WindowState& window) const;
    void show(WindowState& window);
    void hide(const WindowState& window);
    void move(WindowState& window, Rect frame);
    void forget(const WindowState& window);

  private:
    Effects& effects;
    WindowId lastId = 0;
    std::vector<const WindowState*> visible;
    bool markersSeen = true;
};

} // namespace platform::memory
