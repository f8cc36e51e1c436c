#include "platform/gnome/overlay/Windows.h"

#include <algorithm>
#include <utility>

namespace platform::gnome {

class Overlay final : public Window {
  public:
    Overlay(Windows& windows, const WindowStyle& wanted)
        : owner(windows),
          style(wanted),
          place(wanted.frame),
          alpha(wanted.alpha),
          veil(++windows.lastNumber) {
        owner.all.insert(this);
    }
    ~Overlay() override {
        owner.all.erase(this);
        if (isShown) owner.hand.uncover(veil);
    }
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;

    WindowId id() const override { return number; }
    bool isVisible() const override { return visible; }
    Rect frame() const override { return place; }

    void setFrame(Rect frame) override {
        place = frame;
        style.seenAt.reset();
        update();
    }
    void setAlpha(float wanted) override {
        alpha = wanted;
        update();
    }
    void setIgnoresMouseEvents(bool ignores) override {
        ignoresMouse = ignores;
        update();
    }
    void makeKeyAndOrderFront() override {
        const bool isNew = !std::exchange(visible, true);
        if (isNew && number == 0) number = ++owner.lastId;
        if (isNew) update();
    }
    void orderOut() override {
        visible = false;
        update();
    }

    void update() {
        const bool isSeen = visible && (style.kind != WindowKind::marker || owner.markersSeen) &&
                            style.background != WindowColour::clear;
        if (isSeen)
            owner.hand.cover(veil, {.area = area(),
                                    .colour = style.background == WindowColour::red ? 0xff0000U : 0,
                                    .opacity = std::clamp(alpha, 0.0F, 1.0F),
                                    .catches = !ignoresMouse});
        else if (isShown)
            owner.hand.uncover(veil);
        isShown = isSeen;
    }
    /// The shell knows nothing of it any more.
    void forget() { isShown = false; }

  private:
    Rect area() const {
        const Rect all = owner.outputs.toLayout(style.seenAt.value_or(place));
        return style.fullHeight ? owner.outputs.fullHeight(all) : all;
    }

    Windows& owner;
    WindowStyle style;
    Rect place;
    float alpha;
    std::uint32_t veil;
    WindowId number = 0;
    bool visible = false;
    bool ignoresMouse = false;
    bool isShown = false;
};

Windows::Windows(Hand& extension, wayland::Outputs& screens, Log& writer)
    : hand(extension), outputs(screens), log(writer) {
    outputs.onLayout(this, [this] {
        for (Overlay* const window : all)
            window->update();
    });
    hand.onFresh(this, [this](bool again) {
        for (Overlay* const window : all) {
            window->forget();
            if (again) window->update();
        }
    });
}

Windows::~Windows() {
    hand.onFresh(this, {});
    outputs.onLayout(this, {});
}

std::unique_ptr<Window> Windows::create(const WindowStyle& style) {
    if (style.background == WindowColour::clear && !std::exchange(told, true))
        log.write("pictures over the monitors are not shown in a GNOME session");
    return std::make_unique<Overlay>(*this, style);
}

void Windows::letMarkersBeSeen(bool seen) {
    if (std::exchange(markersSeen, seen) == seen) return;
    for (Overlay* const window : all)
        window->update();
}

} // namespace platform::gnome
