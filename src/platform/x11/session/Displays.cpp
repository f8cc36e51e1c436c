#include "platform/x11/session/Displays.h"

#include "platform/x11/session/ScreenGeometry.h"

#include <algorithm>
#include <cmath>

namespace platform::x11 {

struct Displays::Monitor {
    xcb_randr_monitor_info_t info;
    std::vector<xcb_randr_get_output_info_cookie_t> asked;
    xcb_get_atom_name_cookie_t nameAsked{};
};

Displays::Displays(Connection& x) : connection(x) {
    const std::uint8_t first = connection.randrEvents();
    connection.listen(*this,
                      {static_cast<std::uint8_t>(first + XCB_RANDR_SCREEN_CHANGE_NOTIFY),
                       static_cast<std::uint8_t>(first + XCB_RANDR_NOTIFY), XCB_CONFIGURE_NOTIFY});
    connection.selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    xcb_randr_select_input(connection.xcb(), connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    fetch();
}

Displays::~Displays() {
    connection.forget(*this);
}

ScreenId Displays::mainScreen() const {
    return list.empty() ? ScreenId::none : list.front().id;
}

void Displays::onLayout(const void* owner, std::function<void()> changed) {
    std::erase_if(layoutHandlers, [owner](const auto& one) { return one.first == owner; });
    if (changed) layoutHandlers.emplace_back(owner, std::move(changed));
}

void Displays::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) {
        const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (configured.window != connection.root()) return;
    }
    stale = true;
}

// One change of the layout makes a dozen events, so the list is asked for once they have all come.
void Displays::batchEnded() {
    if (!stale) return;
    stale = false;
    const auto listBefore = list;
    const auto wiringBefore = wiring;
    const auto originBefore = std::pair(originX, originY);
    fetch();
    const bool screensChanged = !std::equal(
        list.begin(), list.end(), listBefore.begin(), listBefore.end(),
        [](const Screen& a, const Screen& b) { return a.id == b.id && a.frame == b.frame; });
    const bool layoutChanged =
        screensChanged || wiring != wiringBefore || originBefore != std::pair(originX, originY);
    if (layoutChanged)
        for (const auto& [owner, changed] : layoutHandlers)
            changed();
    if (screensChanged && changedHandler) changedHandler();
}

void Displays::fetch() {
    xcb_connection_t* c = connection.xcb();
    const auto reply = connection.wait(xcb_randr_get_monitors(c, connection.root(), 1),
                                       xcb_randr_get_monitors_reply);
    if (!reply) return;

    std::vector<Monitor> monitors;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        if (it.data->width == 0 || it.data->height == 0) continue;
        Monitor monitor{*it.data, {}, xcb_get_atom_name(c, it.data->name)};
        const xcb_randr_output_t* outputs = xcb_randr_monitor_info_outputs(it.data);
        for (int i = 0; i < xcb_randr_monitor_info_outputs_length(it.data); ++i)
            monitor.asked.push_back(xcb_randr_get_output_info(c, outputs[i], XCB_CURRENT_TIME));
        monitors.push_back(std::move(monitor));
    }
    std::stable_partition(monitors.begin(), monitors.end(),
                          [](const Monitor& m) { return m.info.primary != 0; });
    describe(monitors);
}

void Displays::describe(const std::vector<Monitor>& monitors) {
    list.clear();
    wiring.clear();
    rootAreas.clear();
    std::vector<xcb_rectangle_t> shown;
    std::vector<std::string> names;
    for (const Monitor& m : monitors) {
        shown.push_back({m.info.x, m.info.y, m.info.width, m.info.height});
        const auto name = connection.wait(m.nameAsked, xcb_get_atom_name_reply);
        names.emplace_back(
            name ? xcb_get_atom_name_name(name.get()) : "",
            name ? static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())) : 0);
    }
    for (const auto& [area, members] : screensOf(shown)) {
        if (list.empty()) {
            originX = area.x;
            originY = area.y;
            originHeight = area.height;
        }
        const double bottom = originY + originHeight - (area.y + area.height);
        list.push_back(
            {.id = static_cast<ScreenId>(monitors[members.front()].info.name),
             .frame = {static_cast<double>(area.x - originX), bottom,
                       static_cast<double>(area.width), static_cast<double>(area.height)},
             .name = names[members.front()]});
        rootAreas.push_back(area);
        Wiring wires;
        for (const std::size_t member : members)
            for (const auto& cookie : monitors[member].asked) {
                const auto output = connection.wait(cookie, xcb_randr_get_output_info_reply);
                if (output && output->crtc != XCB_NONE) wires.push_back(output->crtc);
            }
        wiring.push_back(std::move(wires));
    }
}

Point Displays::toTopLeft(int rootX, int rootY) const {
    return {static_cast<double>(rootX - originX), static_cast<double>(rootY - originY)};
}

xcb_point_t Displays::toRoot(Point topLeft) const {
    auto held = [](double v) {
        return static_cast<std::int16_t>(std::clamp(std::floor(v), -32768.0, 32767.0));
    };
    return {held(topLeft.x + originX), held(topLeft.y + originY)};
}

xcb_rectangle_t Displays::toRoot(Rect r) const {
    const xcb_point_t corner = toRoot(Point{r.x, originHeight - (r.y + r.height)});
    auto size = [](double v) {
        return static_cast<std::uint16_t>(std::clamp(std::round(v), 1.0, 32767.0));
    };
    return {corner.x, corner.y, size(r.width), size(r.height)};
}

} // namespace platform::x11
