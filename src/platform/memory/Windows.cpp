#include "platform/memory/Windows.h"

#include <algorithm>
#include <array>

namespace platform::memory {

namespace {

std::string_view nameOf(WindowKind kind) {
    constexpr std::array<std::string_view, 4> names{"dark", "marker", "border", "info"};
    return names.at(static_cast<std::size_t>(kind));
}

std::string_view nameOf(WindowColour colour) {
    constexpr std::array<std::string_view, 3> names{"clear", "black", "red"};
    return names.at(static_cast<std::size_t>(colour));
}

template <class Function>
void forEachMember(const WindowState& window, Function&& use) {
    use(Member{"id", window.id}, Member{"kind", nameOf(window.kind)}, Member{"frame", window.frame},
        Member{"alpha", window.alpha}, Member{"level", window.level},
        Member{"behaviour", window.behaviour}, Member{"ignoresMouse", window.ignoresMouse},
        Member{"background", orNull(window.background)}, Member{"image", orNull(window.image)});
}

/// An overlay that is its properties. Both that are lent outlive it.
class MemoryWindow final : public Window {
  public:
    MemoryWindow(Windows& service, Effects& stream, const WindowStyle& style)
        : windows(service),
          effects(stream),
          state{.kind = style.kind,
                .frame = style.frame,
                .alpha = style.alpha,
                .level = style.level,
                .behaviour = style.behaviour,
                .background = nameOf(style.background),
                .image = style.image} {}
    ~MemoryWindow() override { windows.forget(state); }

    WindowId id() const override { return state.id; }
    bool isVisible() const override { return windows.isShown(state); }
    Rect frame() const override { return state.frame; }
    void setFrame(Rect frame) override { windows.move(state, frame); }

    void setAlpha(float alpha) override {
        state.alpha = std::clamp(alpha, 0.0f, 1.0f);
        if (state.id != 0)
            effects.emit("windowAlpha", Member{"id", state.id}, Member{"alpha", state.alpha});
    }

    void setIgnoresMouseEvents(bool ignores) override { state.ignoresMouse = ignores; }
    void makeKeyAndOrderFront() override { windows.show(state); }
    void orderOut() override { windows.hide(state); }

  private:
    Windows& windows;
    Effects& effects;
    WindowState state;
};

} // namespace

std::unique_ptr<Window> Windows::create(const WindowStyle& style) {
    return std::make_unique<MemoryWindow>(*this, effects, style);
}

bool Windows::isShown(const WindowState& window) const {
    return std::ranges::count(visible, &window) != 0;
}

void Windows::show(WindowState& window) {
    if (isShown(window)) return;
    if (window.id == 0) window.id = ++lastId;
    visible.push_back(&window);
    forEachMember(window, [this](const auto&... members) { effects.emit("window", members...); });
}

void Windows::hide(const WindowState& window) {
    if (std::erase(visible, &window) != 0) effects.emit("windowOut", Member{"id", window.id});
}

// Before it first comes on screen a window has no id to tell of: `window` tells it all.
void Windows::move(WindowState& window, Rect frame) {
    window.frame = frame;
    if (window.id != 0)
        effects.emit("windowFrame", Member{"id", window.id}, Member{"frame", frame});
}

void Windows::forget(const WindowState& window) {
    std::erase(visible, &window);
}

std::vector<json::Raw> Windows::shown() const {
    auto ordered = visible;
    std::ranges::sort(ordered, {}, &WindowState::id);
    std::vector<json::Raw> objects;
    for (const WindowState* window : ordered)
        forEachMember(*window, [&objects](const auto&... members) {
            objects.push_back(json::object(members...));
        });
    return objects;
}

} // namespace platform::memory
