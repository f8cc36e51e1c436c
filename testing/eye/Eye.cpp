#include "testing/eye/Eye.h"

#include <bit>
#include <cstring>
#include <stdexcept>
#include <xcb/damage.h>
#include <xcb/randr.h>

namespace support {

namespace {

/// The bits of a pixel.
struct Channels {
    std::uint32_t red, green, blue;
};

Channels channelsOf(const xcb_screen_t& screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem != 0;
         xcb_depth_next(&depth))
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem != 0;
             xcb_visualtype_next(&visual))
            if (visual.data->visual_id == screen.root_visual)
                return {visual.data->red_mask, visual.data->green_mask, visual.data->blue_mask};
    throw std::runtime_error("the screen has no visual");
}

std::uint8_t inEightBits(std::uint32_t pixel, std::uint32_t mask) {
    const int shift = std::countr_zero(mask);
    return static_cast<std::uint8_t>(((pixel & mask) >> shift) * 255 / (mask >> shift));
}

} // namespace

Eye::Eye(const std::string& display) : server(display) {
    const auto version = own(xcb_damage_query_version_reply(
        server.get(), xcb_damage_query_version(server.get(), 1, 1), nullptr));
    if (!version) throw std::runtime_error("the X server has no DAMAGE");
    // Raw rectangles: each drawing makes an event, and nothing has to be acknowledged.
    xcb_damage_create(server.get(), xcb_generate_id(server.get()), server.root(),
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(server.get(), server.root(), XCB_CW_EVENT_MASK, &mask);
    server.sync();
}

Spot Eye::cursor() const {
    const auto reply = own(xcb_query_pointer_reply(
        server.get(), xcb_query_pointer(server.get(), server.root()), nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
    return {reply->root_x, reply->root_y};
}

Picture Eye::picture() const {
    const auto geometry = own(xcb_get_geometry_reply(
        server.get(), xcb_get_geometry(server.get(), server.root()), nullptr));
    if (!geometry) throw std::runtime_error("the X server is gone");
    return picture({0, 0, geometry->width, geometry->height});
}

Picture Eye::picture(const Area& area) const {
    // The image of a window includes its children where they cover it; the compositor's overlay
    // window is such a child of the root window.
    const auto image = own(xcb_get_image_reply(
        server.get(),
        xcb_get_image(server.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, server.root(),
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), ~std::uint32_t{0}),
        nullptr));
    const auto width = static_cast<std::size_t>(area.width);
    const auto height = static_cast<std::size_t>(area.height);
    const std::size_t bytes = server.screen().root_depth > 16 ? 4 : 2;
    const std::size_t row = (width * bytes + 3) / 4 * 4;
    if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < height * row)
        throw std::runtime_error("no picture of the screen");
    const Channels channels = channelsOf(server.screen());
    Picture result{area, {}};
    result.pixels.reserve(width * height);
    const std::uint8_t* data = xcb_get_image_data(image.get());
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, data + y * row + x * bytes, bytes);
            result.pixels.push_back({inEightBits(pixel, channels.red),
                                     inEightBits(pixel, channels.green),
                                     inEightBits(pixel, channels.blue)});
        }
    return result;
}

bool Eye::waitUntilSeen(const std::function<bool()>& expected, milliseconds limit) {
    return server.waitUntil(expected, limit);
}

bool Eye::waitForColour(int x, int y, const Colour& wanted, milliseconds limit) {
    return waitUntilSeen([&] { return colour(x, y) == wanted; }, limit);
}

GammaRamp Eye::gamma(const std::string& output) const {
    const auto resources = own(xcb_randr_get_screen_resources_current_reply(
        server.get(), xcb_randr_get_screen_resources_current(server.get(), server.root()),
        nullptr));
    const auto* ids =
        resources ? xcb_randr_get_screen_resources_current_outputs(resources.get()) : nullptr;
    for (int index = 0; resources && index < resources->num_outputs; ++index) {
        const auto info = own(xcb_randr_get_output_info_reply(
            server.get(), xcb_randr_get_output_info(server.get(), ids[index], XCB_CURRENT_TIME),
            nullptr));
        if (!info || info->crtc == XCB_NONE) continue;
        const std::string name(
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
            info->name_len);
        if (name != output) continue;
        const auto ramp = own(xcb_randr_get_crtc_gamma_reply(
            server.get(), xcb_randr_get_crtc_gamma(server.get(), info->crtc), nullptr));
        if (!ramp || ramp->size == 0) break;
        const auto channel = [&](const std::uint16_t* values) {
            return std::vector<std::uint16_t>(values, values + ramp->size);
        };
        return {channel(xcb_randr_get_crtc_gamma_red(ramp.get())),
                channel(xcb_randr_get_crtc_gamma_green(ramp.get())),
                channel(xcb_randr_get_crtc_gamma_blue(ramp.get()))};
    }
    throw std::runtime_error("no gamma ramp of " + output);
}

std::vector<SeenWindow> Eye::windows() const {
    const auto tree = own(
        xcb_query_tree_reply(server.get(), xcb_query_tree(server.get(), server.root()), nullptr));
    if (!tree) throw std::runtime_error("the X server is gone");
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    std::vector<SeenWindow> result;
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index)
        result.push_back(describe(children[index]));
    // One that vanished meanwhile has no size.
    std::erase_if(result, [](const SeenWindow& window) { return window.area.width == 0; });
    return result;
}

SeenWindow Eye::describe(xcb_window_t window) const {
    const auto geometryCookie = xcb_get_geometry(server.get(), window);
    const auto attributesCookie = xcb_get_window_attributes(server.get(), window);
    const auto titleCookie =
        xcb_get_property(server.get(), 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 256);
    const auto opacityCookie = xcb_get_property(
        server.get(), 0, window, server.atom("_NET_WM_WINDOW_OPACITY"), XCB_ATOM_CARDINAL, 0, 1);
    SeenWindow seen{window, {}, {}, false, false, false, 1.0};
    const auto geometry = own(xcb_get_geometry_reply(server.get(), geometryCookie, nullptr));
    const auto attributes =
        own(xcb_get_window_attributes_reply(server.get(), attributesCookie, nullptr));
    const auto title = own(xcb_get_property_reply(server.get(), titleCookie, nullptr));
    const auto opacity = own(xcb_get_property_reply(server.get(), opacityCookie, nullptr));
    if (geometry) seen.area = {geometry->x, geometry->y, geometry->width, geometry->height};
    if (attributes) {
        seen.mapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        seen.overrideRedirect = attributes->override_redirect != 0;
        seen.inputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
    }
    if (title)
        seen.title.assign(static_cast<const char*>(xcb_get_property_value(title.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(title.get())));
    if (opacity && xcb_get_property_value_length(opacity.get()) == 4)
        seen.opacity =
            *static_cast<std::uint32_t*>(xcb_get_property_value(opacity.get())) / 4294967295.0;
    return seen;
}

} // namespace support
