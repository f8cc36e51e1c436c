#include "platform/wayland/overlay/Windows.h"

#include "platform/wayland/overlay/Line.h"

#include <algorithm>
#include <cmath>

namespace platform::wayland {

namespace {

Rect common(const Rect& a, const Rect& b) {
    const double left = std::max(a.x, b.x), top = std::max(a.y, b.y);
    return {left, top, std::min(a.x + a.width, b.x + b.width) - left,
            std::min(a.y + a.height, b.y + b.height) - top};
}

bool areSameSize(const Rect& a, const Rect& b) {
    return a.width == b.width && a.height == b.height;
}

} // namespace

/// A layer on each output that it reaches over; a line for a marker, which is moved as long as it
/// stays there and keeps its size.
class Overlay final : public Window {
  public:
    Overlay(Windows& windows, const WindowStyle& wanted)
        : owner(windows), style(wanted), place(wanted.frame), alpha(wanted.alpha) {
        owner.all.insert(this);
    }
    ~Overlay() override {
        keep(0);
        owner.all.erase(this);
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
        for (const Part& part : parts) {
            if (part.layer) part.layer->setPixel(pixel());
            if (part.line) part.line->setPixel(pixel());
        }
    }
    void setIgnoresMouseEvents(bool ignores) override {
        ignoresMouse = ignores;
        updateCatching();
    }
    void makeKeyAndOrderFront() override {
        if (!std::exchange(visible, true) && number == 0) number = ++owner.lastId;
        update();
    }
    void orderOut() override {
        visible = false;
        update();
    }

    void update() {
        const bool isSeen = visible && (style.kind != WindowKind::marker || owner.markersSeen) &&
                            style.background != WindowColour::clear;
        const Rect whole = wholeArea();
        std::size_t count = 0;
        if (isSeen)
            for (const Outputs::Place& output : owner.outputs.places()) {
                const Rect area = common(whole, output.area);
                if (area.width > 0 && area.height > 0) show(count++, output, area);
            }
        keep(count);
    }
    /// Where outputs have come, gone or changed nothing stays as it is.
    void renew() {
        keep(0);
        update();
    }

    void updateCatching() {
        for (const Part& part : parts)
            if (part.layer) part.layer->setCatches(catches());
    }

  private:
    struct Part {
        const wl_output* output;
        Rect area;                    ///< layout coordinates
        std::unique_ptr<Layer> layer; ///< one of the two
        std::unique_ptr<Line> line;

        bool isClosed() const { return layer ? layer->isClosed() : line->isClosed(); }
    };

    Rect wholeArea() const {
        const Rect all = owner.outputs.toLayout(style.seenAt.value_or(place));
        return style.fullHeight ? owner.outputs.fullHeight(all) : all;
    }

    void show(std::size_t index, const Outputs::Place& output, const Rect& area) {
        if (index < parts.size()) {
            Part& part = parts[index];
            const bool canStay = part.output == output.output && !part.isClosed() &&
                                 (part.line ? areSameSize(part.area, area) : part.area == area);
            if (canStay) {
                if (part.area != area) part.line->moveTo({area.x, area.y});
                part.area = area;
                return;
            }
            keep(index);
        }
        Part& made = parts.emplace_back(Part{output.output, area, {}, {}});
        if (style.kind == WindowKind::marker) {
            made.line = std::make_unique<Line>(owner.connection, output, area, pixel());
            return;
        }
        made.layer =
            std::make_unique<Layer>(owner.connection, Layer::Look{output, area, pixel(), false});
        if (!catches()) made.layer->setCatches(false);
    }

    void keep(std::size_t count) {
        for (; parts.size() > count; parts.pop_back())
            if (parts.back().layer) owner.seat.forget(*parts.back().layer);
    }

    Pixel pixel() const {
        constexpr float whole = 255;
        const auto opacity = static_cast<Pixel>(std::lround(std::clamp(alpha, 0.0F, 1.0F) * whole));
        return opacity << 24 | (style.background == WindowColour::red ? opacity << 16 : 0);
    }

    bool catches() const { return !ignoresMouse && !owner.lettingThrough; }

    Windows& owner;
    WindowStyle style;
    Rect place;
    float alpha;
    std::vector<Part> parts;
    WindowId number = 0;
    bool visible = false;
    bool ignoresMouse = false;
};

Windows::Windows(Connection& x, Outputs& screens, PointerSeat& pointer, Log& writer)
    : connection(x), outputs(screens), seat(pointer), log(writer) {
    outputs.onLayout(this, [this] {
        for (Overlay* const window : all)
            window->renew();
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
