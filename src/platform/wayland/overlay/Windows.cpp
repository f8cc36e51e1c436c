#include "platform/wayland/overlay/Windows.h"

#include <algorithm>
#include <cmath>

namespace platform::wayland {

/// The layer is made when the window comes on screen, and anew when its output has gone and come,
/// or when it is to be on another one or of another size.
class Overlay final : public Window {
  public:
    Overlay(Windows& windows, const WindowStyle& wanted)
        : owner(windows), style(wanted), place(wanted.frame), alpha(wanted.alpha) {
        owner.all.insert(this);
    }
    ~Overlay() override {
        takeOff();
        owner.all.erase(this);
    }
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;

    WindowId id() const override { return number; }
    bool isVisible() const override { return visible; }
    Rect frame() const override { return place; }

    void setFrame(Rect frame) override {
        const Rect before = std::exchange(place, frame);
        const bool isSameSize = before.width == frame.width && before.height == frame.height;
        const Rect area = owner.outputs.toLayout(frame);
        const auto* output = owner.outputs.at({area.x, area.y});
        const bool moves = layer && !layer->isClosed() && isSameSize && output &&
                           output->output == shownOn && isInside(area, output->area);
        if (!moves)
            update();
        else if (before != frame)
            layer->moveTo({area.x, area.y}, output->area);
    }
    void setAlpha(float wanted) override {
        alpha = wanted;
        if (layer) layer->setPixel(pixel());
    }
    void setIgnoresMouseEvents(bool ignores) override {
        ignoresMouse = ignores;
        if (layer) layer->setCatches(catches());
    }
    void makeKeyAndOrderFront() override {
        if (!std::exchange(visible, true) && number == 0) number = ++owner.lastId;
        update();
    }
    void orderOut() override {
        visible = false;
        takeOff();
    }

    void update() {
        takeOff();
        const bool isSeen = visible && (style.kind != WindowKind::marker || owner.markersSeen);
        if (!isSeen || style.background == WindowColour::clear) return;
        const Rect area = owner.outputs.toLayout(place);
        const auto* output = owner.outputs.at({area.x, area.y});
        if (!output || !isInside(area, output->area)) return;
        shownOn = output->output;
        layer =
            std::make_unique<Layer>(owner.connection, Layer::Look{*output, area, pixel(), false});
        if (!catches()) layer->setCatches(false);
    }

    void updateCatching() {
        if (layer) layer->setCatches(catches());
    }

  private:
    static bool isInside(const Rect& inner, const Rect& outer) {
        return inner.x >= outer.x && inner.y >= outer.y &&
               inner.x + inner.width <= outer.x + outer.width &&
               inner.y + inner.height <= outer.y + outer.height;
    }

    Pixel pixel() const {
        constexpr float whole = 255;
        const auto opacity = static_cast<Pixel>(std::lround(std::clamp(alpha, 0.0F, 1.0F) * whole));
        return opacity << 24 | (style.background == WindowColour::red ? opacity << 16 : 0);
    }

    bool catches() const { return !ignoresMouse && !owner.lettingThrough; }

    void takeOff() {
        if (!layer) return;
        owner.seat.forget(*layer);
        layer.reset();
    }

    Windows& owner;
    WindowStyle style;
    Rect place;
    float alpha;
    std::unique_ptr<Layer> layer;
    const wl_output* shownOn = nullptr; ///< the layer
    WindowId number = 0;
    bool visible = false;
    bool ignoresMouse = false;
};

Windows::Windows(Connection& x, Outputs& screens, PointerSeat& pointer, Log& writer)
    : connection(x), outputs(screens), seat(pointer), log(writer) {
    outputs.onLayout(this, [this] {
        for (Overlay* const window : all)
            window->update();
    });
}

Windows::~Windows() {
    outputs.onLayout(this, {});
}

std::unique_ptr<Window> Windows::create(const WindowStyle& style) {
    if (style.background == WindowColour::clear && !std::exchange(told, true))
        log.write("pictures over the monitors are not shown in a Wayland session");
    return std::make_unique<Overlay>(*this, style);
}

void Windows::letMarkersBeSeen(bool seen) {
    if (std::exchange(markersSeen, seen) == seen) return;
    for (Overlay* const window : all)
        window->update();
}

void Windows::letPointerThrough(bool through) {
    if (std::exchange(lettingThrough, through) == through) return;
    for (Overlay* const window : all)
        window->updateCatching();
}

} // namespace platform::wayland
