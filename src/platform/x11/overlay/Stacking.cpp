#include "platform/x11/overlay/Stacking.h"

#include <algorithm>

namespace platform::x11 {

void putOnTop(Connection& connection, xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

Stacking::Stacking(Connection& x, std::function<void(std::vector<xcb_window_t>&)> overlays)
    : connection(x), shown(std::move(overlays)) {
    connection.listen(*this, {XCB_MAP_NOTIFY, XCB_CONFIGURE_NOTIFY});
}

Stacking::~Stacking() {
    connection.forget(*this);
}

void Stacking::setActive(bool wanted) {
    if (active == wanted) return;
    active = wanted;
    connection.selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, active);
    suspects.clear();
    lastMoved = XCB_NONE;
    changed = false;
}

// A window that is dragged makes an event for each step and stands where it stood.
void Stacking::handle(const xcb_generic_event_t& event) {
    if (!active) return;
    if ((event.response_type & 0x7f) == XCB_MAP_NOTIFY) {
        const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        if (!mapped.override_redirect) suspect(mapped.window);
        return;
    }
    const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (configured.window == connection.root() || configured.override_redirect) return;
    if (configured.window == lastMoved && configured.above_sibling == lastMovedAbove) return;
    lastMoved = configured.window;
    lastMovedAbove = configured.above_sibling;
    suspect(configured.window);
}

void Stacking::suspect(xcb_window_t window) {
    if (std::find(suspects.begin(), suspects.end(), window) == suspects.end())
        suspects.push_back(window);
    changed = true;
}

void Stacking::batchEnded() {
    if (!changed || asked != 0) return;
    changed = false;
    asked = xcb_query_tree(connection.xcb(), connection.root()).sequence;
    connection.awaitReply(asked, *this);
}

void Stacking::handleReply(unsigned sequence, const void* reply) {
    if (sequence != asked) return;
    asked = 0;
    const auto* tree = static_cast<const xcb_query_tree_reply_t*>(reply);
    if (!tree || !active) return;
    const std::span<const xcb_window_t> order(
        xcb_query_tree_children(tree),
        static_cast<std::size_t>(xcb_query_tree_children_length(tree)));
    const auto isSuspect = [&](xcb_window_t w) {
        return std::find(suspects.begin(), suspects.end(), w) != suspects.end();
    };
    const auto highest = std::find_if(order.rbegin(), order.rend(), isSuspect);
    if (highest != order.rend()) putAbove(*highest, {order.begin(), highest.base()});
    if (!changed) suspects.clear();
}

// `order` lies below `managed`, lowest first. The window may have gone meanwhile, which is no
// error.
void Stacking::putAbove(xcb_window_t managed, std::span<const xcb_window_t> order) {
    own.clear();
    shown(own);
    xcb_window_t below = managed;
    for (xcb_window_t window : order) {
        if (std::find(own.begin(), own.end(), window) == own.end()) continue;
        const std::uint32_t values[] = {below, XCB_STACK_MODE_ABOVE};
        const auto cookie = xcb_configure_window_checked(
            connection.xcb(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
            values);
        xcb_discard_reply(connection.xcb(), cookie.sequence);
        below = window;
    }
}

} // namespace platform::x11
