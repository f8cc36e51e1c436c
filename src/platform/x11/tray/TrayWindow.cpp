#include "platform/x11/tray/TrayWindow.h"

#include "platform/x11/tray/Contrast.h"
#include "platform/x11/tray/Panels.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>

namespace platform::x11 {

namespace {

constexpr int smallestSize = 8, largestSize = 256;
constexpr std::uint32_t xembedVersion = 0;
constexpr std::uint32_t xembedMapped = 1;

std::optional<int> buttonNumber(xcb_button_t button) {
    switch (button) {
    case 1:
        return 0;
    case 2:
        return 2;
    case 3:
        return 1;
    default:
        return {};
    }
}

std::uint32_t channel(std::uint32_t pixel, int shift) {
    return pixel >> shift & 0xff;
}

void blend(std::vector<std::uint32_t>& below, const std::vector<std::uint32_t>& above) {
    for (std::size_t i = 0; i < below.size(); ++i) {
        const std::uint32_t rest = 255 - channel(above[i], 24);
        std::uint32_t result = 0;
        for (const int shift : {16, 8, 0})
            result |=
                std::min(255u, channel(above[i], shift) + channel(below[i], shift) * rest / 255)
                << shift;
        below[i] = result;
    }
}

} // namespace

TrayWindow::~TrayWindow() {
    undock();
    connection.forget(*this);
}

void TrayWindow::show(Handlers given) {
    handlers = std::move(given);
    host.emplace(connection, TrayHost::Events{[this] {
                                                  dock();
                                                  handlers.hostChanged();
                                              },
                                              [this] {
                                                  undock();
                                                  proxy = XCB_NONE;
                                                  handlers.hostChanged();
                                              },
                                              [this] {
                                                  askForSquare();
                                                  repaint();
                                              }});
    connection.listen(*this, {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE, XCB_EXPOSE, XCB_ENTER_NOTIFY,
                              XCB_LEAVE_NOTIFY, XCB_CONFIGURE_NOTIFY, XCB_REPARENT_NOTIFY,
                              XCB_DESTROY_NOTIFY});
    dock();
}

void TrayWindow::dock() {
    undock();
    if (!hasHost()) return;
    create();
    describe();
    askForLength(usualSize);
    host->requestDock(window);
    connection.flush();
}

void TrayWindow::undock() {
    if (window == XCB_NONE) return;
    xcb_free_gc(xcb(), context);
    // A host that died may have taken the window with it, unnoticed so far.
    xcb_discard_reply(xcb(), xcb_destroy_window_checked(xcb(), window).sequence);
    if (colormap != XCB_NONE) xcb_free_colormap(xcb(), colormap);
    window = context = colormap = XCB_NONE;
    shown.clear();
    contrast.reset();
    connection.flush();
}

bool TrayWindow::hasHost() const {
    return host && host->window() != XCB_NONE && host->window() != proxy;
}

bool TrayWindow::isUnseen(xcb_window_t parent) {
    const auto opacity = connection.wait(
        xcb_get_property(xcb(), 0, parent, connection.atom(AtomName::netWmWindowOpacity),
                         XCB_ATOM_CARDINAL, 0, 1),
        xcb_get_property_reply);
    return opacity && opacity->format == 32 && opacity->value_len == 1 &&
           *static_cast<const std::uint32_t*>(xcb_get_property_value(opacity.get())) == 0;
}

// lxqt and Plasma keep the windows of icons out of sight and offer copies of them as status
// notifier items, with nothing that tells what is behind. An item of the program's own is better.
void TrayWindow::leaveProxy() {
    proxy = host->window();
    undock();
    handlers.hostChanged();
}

std::optional<TrayColour> TrayWindow::panelText() {
    return contrastToPanels(connection);
}

// A window that the host has not yet taken in stands by itself.
std::optional<TrayWindow::Place> TrayWindow::place() {
    if (window == XCB_NONE) return {};
    const xcb_window_t holder = topLevelOf(connection, window);
    if (holder == XCB_NONE || holder == window) return {};
    const auto icon = areaOnScreen(connection, window);
    const auto panel = areaOnScreen(connection, holder);
    if (!icon || !panel || std::min(icon->width, icon->height) < smallestSize) return {};
    return Place{*icon, *panel, host->isVertical()};
}

std::vector<PixelArea> TrayWindow::panels() {
    return panelsOnScreen(connection);
}

void TrayWindow::create() {
    const xcb_screen_t& screen = connection.screenInfo();
    const auto formatOf = [&](xcb_visualid_t visual) {
        return PixelFormat::of(*xcb_get_setup(xcb()), screen, visual);
    };
    rootFormat = formatOf(screen.root_visual);
    xcb_visualid_t visual = host->visual();
    format = formatOf(visual);
    if (!format || (format->depth() != screen.root_depth && format->depth() != 32)) {
        visual = screen.root_visual;
        format = rootFormat;
    }
    const std::uint8_t depth = format ? format->depth() : screen.root_depth;
    if (visual != screen.root_visual) {
        colormap = xcb_generate_id(xcb());
        xcb_create_colormap(xcb(), XCB_COLORMAP_ALLOC_NONE, colormap, connection.root(), visual);
    }
    const std::uint32_t events = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                 XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                 XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    const bool likeParent = depth == screen.root_depth;
    const std::uint32_t ground =
        likeParent ? static_cast<std::uint32_t>(XCB_BACK_PIXMAP_PARENT_RELATIVE) : 0;
    const std::array<std::uint32_t, 4> values = {
        ground, 0, events, colormap != XCB_NONE ? colormap : screen.default_colormap};
    width = height = usualSize;
    pressed = 0;
    window = xcb_generate_id(xcb());
    xcb_create_window(xcb(), depth, window, connection.root(), 0, 0, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      (likeParent ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL) | XCB_CW_BORDER_PIXEL |
                          XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values.data());
    context = xcb_generate_id(xcb());
    xcb_create_gc(xcb(), context, window, 0, nullptr);
}

void TrayWindow::describe() const {
    const std::array<std::uint32_t, 2> embed = {xembedVersion, xembedMapped};
    const xcb_atom_t info = connection.intern("_XEMBED_INFO");
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, info, info, 32, embed.size(),
                        embed.data());
    const std::string twice = name + '\0' + name + '\0';
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(twice.size()), twice.data());
    writeTitle();
    const auto process = static_cast<std::uint32_t>(getpid());
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, connection.atom(AtomName::netWmPid),
                        XCB_ATOM_CARDINAL, 32, 1, &process);
}

void TrayWindow::writeTitle() const {
    for (const xcb_atom_t property :
         {static_cast<xcb_atom_t>(XCB_ATOM_WM_NAME), connection.atom(AtomName::netWmName)})
        xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, property,
                            connection.atom(AtomName::utf8String), 8,
                            static_cast<std::uint32_t>(title.size()), title.data());
}

void TrayWindow::setTitle(const std::string& text) {
    if (text == title) return;
    title = text;
    if (window == XCB_NONE) return;
    writeTitle();
    connection.flush();
}

// xfce hides an icon that does not ask for a size.
void TrayWindow::askForLength(int length) {
    asked = length;
    constexpr std::uint32_t hasMinimum = 1 << 4;
    std::array<std::uint32_t, 18> hints{hasMinimum};
    const auto along = static_cast<std::uint32_t>(length);
    hints[5] = host->isVertical() ? std::uint32_t{usualSize} : along;
    hints[6] = host->isVertical() ? along : std::uint32_t{usualSize};
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
}

// trayer makes an icon just as long as it asks, in a panel of any height; GTK panels of twice the
// resolution make it twice as long. So what was got for the last wish tells what to wish for.
void TrayWindow::askForSquare() {
    const int along = host->isVertical() ? height : width;
    const int across = host->isVertical() ? width : height;
    if (window == XCB_NONE || along == across) return;
    if (std::min(along, across) < smallestSize) return; // not laid out yet
    const int wish = std::clamp(asked * across / along, smallestSize, largestSize);
    if (wish != asked) askForLength(wish);
}

void TrayWindow::handle(const xcb_generic_event_t& event) {
    if (window == XCB_NONE) return;
    switch (event.response_type & 0x7f) {
    case XCB_BUTTON_PRESS:
        press(reinterpret_cast<const xcb_button_press_event_t&>(event));
        break;
    case XCB_BUTTON_RELEASE:
        release(reinterpret_cast<const xcb_button_release_event_t&>(event));
        break;
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY: {
        const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
        const bool on = (event.response_type & 0x7f) == XCB_ENTER_NOTIFY;
        if (crossing.event == window && handlers.hovered) handlers.hovered(on);
        break;
    }
    case XCB_EXPOSE: {
        const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
        if (expose.window == window && expose.count == 0) repaint();
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (notify.window != window || (notify.width == width && notify.height == height)) return;
        width = notify.width;
        height = notify.height;
        askForSquare();
        repaint();
        break;
    }
    case XCB_REPARENT_NOTIFY: {
        // A host that goes leaves the window on the root, where it would be a window of its own.
        const auto& notify = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
        if (notify.window == window && notify.parent == connection.root())
            undock();
        else if (notify.window == window && isUnseen(notify.parent))
            leaveProxy();
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window) undock();
        break;
    }
}

void TrayWindow::press(const xcb_button_press_event_t& event) {
    if (event.event == window) pressed = event.detail;
}

// With the release the server's grab for the press is over, so that a menu can take its own.
void TrayWindow::release(const xcb_button_release_event_t& event) {
    if (event.event != window || event.detail != pressed) return;
    pressed = 0;
    const bool inside =
        event.event_x >= 0 && event.event_y >= 0 && event.event_x < width && event.event_y < height;
    const auto button = buttonNumber(event.detail);
    if (inside && button) handlers.clicked(*button);
}

// Where the host or the compositor blends, nobody but the screen knows what is behind the icon. It
// is told from the icon itself by the last picture: only where that lets it through.
std::optional<TrayColour> TrayWindow::contrastOnScreen(int side, int left, int top) {
    if (!rootFormat) return {};
    const auto place = connection.wait(xcb_translate_coordinates(xcb(), window, connection.root(),
                                                                 static_cast<std::int16_t>(left),
                                                                 static_cast<std::int16_t>(top)),
                                       xcb_translate_coordinates_reply);
    if (!place) return {};
    auto pixels = readPixels(connection, connection.root(), *rootFormat,
                             {place->dst_x, place->dst_y, side, side});
    if (shown.size() == pixels.size()) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            if (channel(shown[i], 24) == 0) pixels[kept++] = pixels[i];
        if (kept == 0) return contrast;
        pixels.resize(kept);
    }
    contrast = contrastTo(pixels);
    return contrast;
}

void TrayWindow::repaint() {
    if (window == XCB_NONE || !format) return;
    const int side = std::min(width, height);
    const int left = (width - side) / 2;
    const int top = (height - side) / 2;
    std::optional<TrayColour> foreground = host->foreground();
    std::vector<std::uint32_t> pixels;
    const bool blendsHere = format->depth() != 32;
    if (!blendsHere && !foreground) foreground = contrastOnScreen(side, left, top);
    xcb_clear_area(xcb(), 0, window, 0, 0, 0, 0);
    if (blendsHere) {
        pixels = readPixels(connection, window, *format, {left, top, side, side});
        // Only what is on the screen can be read back; the rest is exposed when it comes there.
        if (pixels.empty()) return;
        if (!foreground) foreground = contrastTo(pixels);
    }
    shown = handlers.draw(side, foreground);
    if (shown.size() != static_cast<std::size_t>(side) * static_cast<std::size_t>(side))
        return connection.flush();
    if (blendsHere)
        blend(pixels, shown);
    else
        pixels = shown;
    const auto bytes = format->pack(pixels, side);
    xcb_put_image(xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, context,
                  static_cast<std::uint16_t>(side), static_cast<std::uint16_t>(side),
                  static_cast<std::int16_t>(left), static_cast<std::int16_t>(top), 0,
                  format->depth(), static_cast<std::uint32_t>(bytes.size()), bytes.data());
    connection.flush();
}

} // namespace platform::x11
