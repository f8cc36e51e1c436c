#include "platform/x11/pointer/Reach.h"

#include <xcb/xinput.h>

// What a grab confines the cursor to is told to nobody, and a warp that leads out of it ends at its
// border. So the cursor is warped and its place asked for; with the server grabbed nobody else sees
// the cursor away. A warp may be bound to a part of the root window: it is carried out only if the
// cursor is there when the server comes to it, and a cursor that somebody has put elsewhere stays.

namespace platform::x11 {

namespace {

/// The pixels from the last one before a side outwards, or without it. The server takes the pixel
/// behind a rectangle for a part of it, and no size for one without end.
xcb_rectangle_t beyond(Side side, const Box& box, bool lastPixelToo) {
    const int last = lastPixel(side, box);
    const int inwards = lastPixelToo ? 0 : 1;
    const auto begin = static_cast<std::int16_t>(last + inwards);
    const auto size = static_cast<std::uint16_t>(last - inwards);
    switch (side) {
    case Side::left:
        return {0, 0, size, 0};
    case Side::right:
        return {begin, 0, 0, 0};
    case Side::top:
        return {0, 0, 0, size};
    case Side::bottom:
        return {0, begin, 0, 0};
    }
    return {};
}

constexpr xcb_rectangle_t anywhere{0, 0, 0, 0};

} // namespace

Reach::~Reach() {
    connection.forget(*this);
    if (unmapped != XCB_NONE) xcb_destroy_window(connection.xcb(), unmapped);
}

void Reach::warp(const xcb_rectangle_t& only, xcb_window_t from, int x, int y) {
    xcb_warp_pointer(connection.xcb(), connection.root(), from, only.x, only.y, only.width,
                     only.height, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
}

void Reach::await(unsigned sequence, bool isGrab) {
    last = Answer::none;
    asked = sequence;
    isAboutGrab = isGrab;
    connection.awaitReply(sequence, *this);
}

void Reach::forget() {
    last = Answer::none;
    asked = 0;
}

// There and back by the same way, since the cursor may have slid along the side meanwhile. One that
// the hand moved on in between is fetched.
void Reach::tryOut(const Box& screen, Side side, xcb_point_t from, xcb_point_t to) {
    xcb_connection_t* c = connection.xcb();
    box = screen;
    wantsOut = true;
    const auto out = beyond(side, screen, false);
    xcb_grab_server(c);
    warp(beyond(side, screen, true), XCB_NONE, to.x - from.x, to.y - from.y);
    await(xcb_query_pointer(c, connection.root()).sequence, false);
    warp(out, XCB_NONE, from.x - to.x, from.y - to.y);
    warp(out, connection.root(), from.x, from.y);
    xcb_ungrab_server(c);
}

void Reach::tryIn(const Box& screen, xcb_point_t from, xcb_point_t to) {
    xcb_connection_t* c = connection.xcb();
    box = screen;
    wantsOut = false;
    xcb_grab_server(c);
    warp(anywhere, connection.root(), to.x, to.y);
    await(xcb_query_pointer(c, connection.root()).sequence, false);
    warp(anywhere, connection.root(), from.x, from.y);
    xcb_ungrab_server(c);
}

// The server looks for another client's grab before it looks at the window. Asked by the core
// protocol's request it would lift the other's confinement, though it refuses the grab.
void Reach::askForGrab() {
    if (unmapped == XCB_NONE) {
        unmapped = xcb_generate_id(connection.xcb());
        xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, unmapped, connection.root(), -1,
                          -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
    }
    await(xcb_input_xi_grab_device(connection.xcb(), unmapped, XCB_CURRENT_TIME, XCB_NONE,
                                   connection.masterPointer(), XCB_INPUT_GRAB_MODE_22_ASYNC,
                                   XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, 0,
                                   nullptr)
              .sequence,
          true);
}

void Reach::handleReply(unsigned sequence, const void* reply) {
    if (sequence != asked) return;
    asked = 0;
    if (reply == nullptr) return;
    bool reached = false;
    if (isAboutGrab) {
        const auto status = static_cast<const xcb_input_xi_grab_device_reply_t*>(reply)->status;
        reached = status == XCB_GRAB_STATUS_NOT_VIEWABLE;
    } else {
        const auto& told = *static_cast<const xcb_query_pointer_reply_t*>(reply);
        const Point place{static_cast<double>(told.root_x), static_cast<double>(told.root_y)};
        reached = box.contains(place) != wantsOut;
    }
    last = reached ? Answer::reached : Answer::notReached;
}

} // namespace platform::x11
