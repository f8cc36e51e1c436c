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

} // namespace

/// A window that is its properties. The service outlives it.
class MemoryWindow final : public Window {
  public:
    MemoryWindow(Windows& service, const WindowStyle& windowStyle)
        : windows(service), style(windowStyle) {}
    ~MemoryWindow() override { std::erase(windows.visible, this); }

    WindowId id() const override { return number; }
    bool isVisible() const override { return std::ranges::count(windows.visible, this) != 0; }
    Rect frame() const override { return style.frame; }

    // Before it first comes on screen a window has no id to tell of: `window` tells it all.
    void setFrame(Rect frame) override {
        style.frame = frame;
        if (number != 0)
            windows.effects.emit("windowFrame", Member{"id", number}, Member{"frame", frame});
    }

    void setAlpha(float alpha) override {
        style.alpha = std::clamp(alpha, 0.0f, 1.0f);
        if (number != 0)
            windows.effects.emit("windowAlpha", Member{"id", number}, Member{"alpha", style.alpha});
    }

    void setIgnoresMouseEvents(bool ignores) override { ignoresMouse = ignores; }

    void makeKeyAndOrderFront() override {
        if (isVisible()) return;
        if (number == 0) number = ++windows.lastId;
        windows.visible.push_back(this);
        forEachMember(
            [this](const auto&... members) { windows.effects.emit("window", members...); });
    }

    void orderOut() override {
        if (std::erase(windows.visible, this) != 0)
            windows.effects.emit("windowOut", Member{"id", number});
    }

    std::string members() const {
        std::string text;
        forEachMember([&text](const auto&... members) {
            (writeMember(text, members.name, members.value), ...);
        });
        return text;
    }

  private:
    template <class Function>
    void forEachMember(Function&& use) const {
        use(Member{"id", number}, Member{"kind", nameOf(style.kind)}, Member{"frame", style.frame},
            Member{"alpha", style.alpha}, Member{"level", style.level},
            Member{"behaviour", style.behaviour}, Member{"ignoresMouse", ignoresMouse},
            Member{"background", nameOf(style.background)}, Member{"image", orNull(style.image)});
    }

    Windows& windows;
    WindowStyle style;
    WindowId number = 0;
    bool ignoresMouse = false;
};

std::unique_ptr<Window> Windows::create(const WindowStyle& style) {
    return std::make_unique<MemoryWindow>(*this, style);
}

std::vector<std::string> Windows::shown() const {
    auto ordered = visible;
    std::ranges::sort(ordered, {}, &MemoryWindow::id);
    std::vector<std::string> texts;
    for (const MemoryWindow* window : ordered)
        texts.push_back(window->members());
    return texts;
}

} // namespace platform::memory
