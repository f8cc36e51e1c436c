#include "platform/x11/overlay/GammaOutputs.h"

#include "platform/x11/session/ScreenGeometry.h"

#include <algorithm>
#include <map>
#include <set>

namespace platform::x11 {

namespace {

bool isInside(const xcb_rectangle_t& part, const xcb_rectangle_t& whole) {
    return part.x >= whole.x && part.y >= whole.y && part.x + part.width <= whole.x + whole.width &&
           part.y + part.height <= whole.y + whole.height;
}

bool areEqual(const xcb_rectangle_t& a, const xcb_rectangle_t& b) {
    return isInside(a, b) && isInside(b, a);
}

} // namespace

GammaOutputs::GammaOutputs(Connection& x, const Displays& screens)
    : connection(x), displays(screens) {}

// A monitor without a CRTC is a region of another one's output. Mirrors of a screen lie inside it
// and go dark with it.
std::vector<xcb_randr_crtc_t> GammaOutputs::litAlone(Rect screen) {
    if (!known) known = fetch();
    const xcb_rectangle_t own = displays.toRoot(screen);
    const auto isAnothers = [&](const xcb_rectangle_t& area) {
        return std::ranges::any_of(displays.screens(), [&](const Screen& one) {
            return one.frame != screen && areEqual(displays.toRoot(one.frame), area);
        });
    };
    std::set<xcb_randr_crtc_t> found;
    std::vector<const Lit*> others;
    for (const Lit& monitor : known->monitors) {
        if (isInside(monitor.area, own) && !isAnothers(monitor.area))
            found.insert(monitor.crtcs.begin(), monitor.crtcs.end());
        else
            others.push_back(&monitor);
    }
    for (const Lit& crtc : known->crtcs) {
        if (!found.contains(crtc.crtcs.front())) continue;
        const bool isShared = std::ranges::any_of(others, [&](const Lit* other) {
            return other->crtcs.empty() ? overlap(other->area, crtc.area)
                                        : std::ranges::count(other->crtcs, crtc.crtcs.front()) > 0;
        });
        if (isShared || !isInside(crtc.area, own)) return {};
    }
    return {found.begin(), found.end()};
}

GammaOutputs::Wiring GammaOutputs::fetch() {
    xcb_connection_t* c = connection.xcb();
    const auto monitorsAsked = xcb_randr_get_monitors(c, connection.root(), 1);
    const auto resourcesAsked = xcb_randr_get_screen_resources_current(c, connection.root());
    const auto monitors = connection.wait(monitorsAsked, xcb_randr_get_monitors_reply);
    const auto resources =
        connection.wait(resourcesAsked, xcb_randr_get_screen_resources_current_reply);
    Wiring wiring;
    if (!monitors || !resources) return wiring;

    const auto* crtcs = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    std::vector<xcb_randr_get_crtc_info_cookie_t> asked;
    for (int i = 0; i < resources->num_crtcs; ++i)
        asked.push_back(xcb_randr_get_crtc_info(c, crtcs[i], resources->config_timestamp));
    std::map<xcb_randr_output_t, xcb_randr_crtc_t> crtcOf;
    for (int i = 0; i < resources->num_crtcs; ++i) {
        const auto info = connection.wait(asked[i], xcb_randr_get_crtc_info_reply);
        if (!info || info->mode == XCB_NONE) continue;
        wiring.crtcs.push_back({{info->x, info->y, info->width, info->height}, {crtcs[i]}});
        const auto* outputs = xcb_randr_get_crtc_info_outputs(info.get());
        for (int k = 0; k < info->num_outputs; ++k)
            crtcOf[outputs[k]] = crtcs[i];
    }
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        const auto& info = *it.data;
        Lit monitor{{info.x, info.y, info.width, info.height}, {}};
        const auto* outputs = xcb_randr_monitor_info_outputs(it.data);
        for (int k = 0; k < xcb_randr_monitor_info_outputs_length(it.data); ++k)
            if (const auto lit = crtcOf.find(outputs[k]); lit != crtcOf.end())
                monitor.crtcs.push_back(lit->second);
        wiring.monitors.push_back(std::move(monitor));
    }
    return wiring;
}

} // namespace platform::x11
