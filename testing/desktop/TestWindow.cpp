#include "testing/desktop/TestWindow.h"

#include <array>
#include <stdexcept>
#include <xcb/xcb_icccm.h>

namespace support {

namespace {

std::uint32_t pixel(Colour colour) {
    return static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
}

} // namespace

TestWindow::TestWindow(const std::string& display, const Area& area, Colour colour,
                       const std::string& title)
    : x(display), window(xcb_generate_id(x.get())) {
    const std::array<std::uint32_t, 2> values{
        pixel(colour), XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_EXPOSURE |
                           XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(),
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                        8, static_cast<std::uint32_t>(title.size()), title.data());
    // The user's own position, and no decoration: the window stands exactly where it was put.
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, area.x, area.y);
    xcb_icccm_size_hints_set_size(&hints, 1, area.width, area.height);
    xcb_icccm_set_wm_normal_hints(x.get(), window, &hints);
    const std::array<std::uint32_t, 5> plain{2, 0, 0, 0, 0};
    const xcb_atom_t motif = x.atom("_MOTIF_WM_HINTS");
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, motif, motif, 32, plain.size(),
                        plain.data());
    xcb_map_window(x.get(), window);
    const bool there = x.waitUntil([&] { return shown; }, generous,
                                   [&](const xcb_generic_event_t& event) { note(event); });
    if (!there) throw std::runtime_error("the window \"" + title + "\" was not shown");
}

TestWindow::~TestWindow() {
    xcb_destroy_window(x.get(), window);
    // Not before the reply is the window gone for everybody.
    own(xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
}

void TestWindow::note(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_BUTTON_PRESS:
        ++pressCount;
        break;
    case XCB_EXPOSE:
        shown = true;
        break;
    default:
        break;
    }
}

Area TestWindow::area() const {
    const auto geometry =
        own(xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), window), nullptr));
    const auto origin = own(xcb_translate_coordinates_reply(
        x.get(), xcb_translate_coordinates(x.get(), window, x.root(), 0, 0), nullptr));
    if (!geometry || !origin) throw std::runtime_error("the window is gone");
    return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

int TestWindow::presses() {
    x.sync();
    while (const Event event = x.nextEvent())
        note(*event);
    return pressCount;
}

bool TestWindow::waitForPresses(int count, milliseconds limit) {
    return x.waitUntil([&] { return pressCount >= count; }, limit,
                       [&](const xcb_generic_event_t& event) { note(event); });
}

void TestWindow::makeFullScreen() {
    requestFullScreen(true);
}

void TestWindow::leaveFullScreen() {
    requestFullScreen(false);
}

void TestWindow::requestFullScreen(bool on) {
    const Area before = area();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x.atom("_NET_WM_STATE");
    message.data.data32[0] = on ? 1 : 0;
    message.data.data32[1] = x.atom("_NET_WM_STATE_FULLSCREEN");
    message.data.data32[3] = 1; // from an application
    xcb_send_event(x.get(), 0, x.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    const bool done = x.waitUntil([&] { return area() != before; }, generous,
                                  [&](const xcb_generic_event_t& event) { note(event); });
    if (!done) throw std::runtime_error("the window manager did not change the window");
}

} // namespace support
