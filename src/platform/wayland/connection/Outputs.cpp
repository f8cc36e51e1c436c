#include "platform/wayland/connection/Outputs.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace platform::wayland {

struct Outputs::Output {
    Outputs& owner;
    std::uint32_t global = 0;
    wl_output* output = nullptr;
    Handle<zxdg_output_v1> described;
    std::string name;
    Rect area;
    bool isDone = false; ///< and so what it tells is whole
    int pixels = 0;      ///< of the panel, along its longer side

    double scale() const {
        const double longer = std::max(area.width, area.height);
        return pixels > 0 && longer > 0 ? pixels / longer : 1;
    }
};

Outputs::Outputs(Connection& x) : connection(x) {
    connection.onOutput([this](std::uint32_t name, wl_output* output) { add(name, output); },
                        [this](std::uint32_t name) { remove(name); });
    connection.synchronize();
    update();
    connection.onBatchEnd(this, [this] { update(); });
}

Outputs::~Outputs() {
    connection.onBatchEnd(this, {});
    connection.onOutput({}, {});
}

void Outputs::add(std::uint32_t name, wl_output* output) {
    auto& made = *outputs.emplace_back(new Output{*this, name, output, {}, {}, {}, false, 0});
    static constexpr auto finish = [](void* self) {
        static_cast<Output*>(self)->isDone = true;
        static_cast<Output*>(self)->owner.stale = true;
    };
    static const wl_output_listener listener{
        .geometry = [](void*, wl_output*, int, int, int, int, int, const char*, const char*,
                       int) {},
        .mode =
            [](void* self, wl_output*, std::uint32_t flags, int width, int height, int) {
                if (flags & WL_OUTPUT_MODE_CURRENT)
                    static_cast<Output*>(self)->pixels = std::max(width, height);
            },
        .done = [](void* self, wl_output*) { finish(self); },
        .scale = [](void*, wl_output*, int) {},
        .name = [](void*, wl_output*, const char*) {},
        .description = [](void*, wl_output*, const char*) {}};
    wl_output_add_listener(output, &listener, &made);
    made.described.reset(zxdg_output_manager_v1_get_xdg_output(connection.outputs(), output));
    static const zxdg_output_v1_listener describing{
        .logical_position =
            [](void* self, zxdg_output_v1*, int x, int y) {
                static_cast<Output*>(self)->area.x = x;
                static_cast<Output*>(self)->area.y = y;
            },
        .logical_size =
            [](void* self, zxdg_output_v1*, int width, int height) {
                static_cast<Output*>(self)->area.width = width;
                static_cast<Output*>(self)->area.height = height;
            },
        .done = [](void* self, zxdg_output_v1*) { finish(self); },
        .name = [](void* self, zxdg_output_v1*,
                   const char* text) { static_cast<Output*>(self)->name = text; },
        .description = [](void*, zxdg_output_v1*, const char*) {}};
    zxdg_output_v1_add_listener(made.described.get(), &describing, &made);
    connection.flush();
}

// Who makes a layer before the batch has ended leaves the choice to the compositor.
void Outputs::remove(std::uint32_t name) {
    for (const auto& one : outputs)
        for (Place& place : ordered)
            if (one->global == name && place.output == one->output) place.output = nullptr;
    std::erase_if(outputs, [name](const auto& one) { return one->global == name; });
    stale = true;
}

void Outputs::update() {
    if (!stale) return;
    // What is half told would be a layout that there never was.
    const auto isWhole = [](const auto& one) { return one->isDone && one->area.width > 0; };
    if (!std::ranges::all_of(outputs, isWhole)) return;
    stale = false;
    std::vector<Place> places;
    for (const auto& one : outputs) {
        auto position = std::ranges::find(known, one->name);
        if (position == known.end()) position = known.insert(known.end(), one->name);
        const auto number = static_cast<std::uint32_t>(position - known.begin()) + 1;
        places.push_back({ScreenId{number}, one->output, one->name, one->area, one->scale()});
    }
    std::ranges::sort(places, {}, [](const Place& place) {
        return std::tuple(place.area.x, place.area.y, place.name);
    });
    // What shows the same as another one is no screen of its own.
    const auto mirrors = std::ranges::unique(places, {}, &Place::area);
    places.erase(mirrors.begin(), mirrors.end());
    const auto isSame = [](const Place& a, const Place& b) {
        return a.id == b.id && a.output == b.output && a.area == b.area && a.scale == b.scale;
    };
    if (std::ranges::equal(places, ordered, isSame)) return;
    ordered = std::move(places);
    origin = ordered.empty() ? Point{} : Point{ordered[0].area.x, ordered[0].area.y};
    const double height = ordered.empty() ? 0 : ordered[0].area.height;
    list.clear();
    for (const Place& place : ordered) {
        const Rect& r = place.area;
        list.push_back({place.id,
                        {r.x - origin.x, height - r.height - (r.y - origin.y), r.width, r.height},
                        place.name,
                        place.scale});
    }
    for (std::size_t i = 0; i < layoutHandlers.size(); ++i)
        layoutHandlers[i].second();
    if (changedHandler) changedHandler();
}

void Outputs::onLayout(const void* owner, std::function<void()> changed) {
    std::erase_if(layoutHandlers, [owner](const auto& one) { return one.first == owner; });
    if (changed) layoutHandlers.emplace_back(owner, std::move(changed));
}

Rect Outputs::toLayout(Rect r) const {
    const double height = ordered.empty() ? 0 : ordered[0].area.height;
    return {r.x + origin.x, height - r.height - r.y + origin.y, r.width, r.height};
}

Rect Outputs::fullHeight(Rect area) const {
    if (ordered.empty()) return area;
    double top = ordered[0].area.y, bottom = top;
    for (const Place& place : ordered) {
        top = std::min(top, place.area.y);
        bottom = std::max(bottom, place.area.y + place.area.height);
    }
    return {area.x, top, area.width, bottom - top};
}

const Outputs::Place* Outputs::at(Point layout) const {
    const auto away = [layout](const Place& place) {
        const Rect& r = place.area;
        return std::hypot(std::max({r.x - layout.x, 0.0, layout.x - (r.x + r.width - 1)}),
                          std::max({r.y - layout.y, 0.0, layout.y - (r.y + r.height - 1)}));
    };
    for (const Place& place : ordered)
        if (place.area.contains(layout)) return &place;
    const auto nearestPlace = std::ranges::min_element(ordered, {}, away);
    return nearestPlace == ordered.end() ? nullptr : &*nearestPlace;
}

Point Outputs::nearest(Point layout) const {
    const Place* const place = at(layout);
    if (!place || place->area.contains(layout)) return layout;
    const Rect& r = place->area;
    return {std::clamp(layout.x, r.x, r.x + r.width - 1),
            std::clamp(layout.y, r.y, r.y + r.height - 1)};
}

} // namespace platform::wayland
