#include "platform/x11/overlay/Overlay.h"

#include "platform/x11/session/ScreenGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <xcb/shape.h>

namespace platform::x11 {

namespace {

template <std::size_t N>
void setProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                 const std::array<std::uint32_t, N>& values) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, type, 32, N, values.data());
}

} // namespace

Overlay::Overlay(Windows& windows, const WindowStyle& wanted) : owner(windows), style(wanted) {
    style.alpha = std::clamp(style.alpha, 0.0f, 1.0f);
    owner.overlays.push_back(this);
}

Overlay::~Overlay() {
    visible = false;
    unmake();
    std::erase(owner.overlays, this);
    owner.visibilityChanged();
    owner.connection.flush();
}

Overlay::Form Overlay::wantedForm() const {
    if (owner.canBlend()) return Form::translucent;
    if (style.background == WindowColour::clear) return Form::catcher;
    return style.kind == WindowKind::dark ? Form::gammaAndCatcher : Form::solid;
}

xcb_rectangle_t Overlay::wantedArea() const {
    xcb_rectangle_t wanted = owner.displays.toRoot(style.seenAt.value_or(style.frame));
    if (!style.fullHeight || owner.displays.areas().empty()) return wanted;
    const xcb_rectangle_t desktop = around(owner.displays.areas());
    wanted.y = desktop.y;
    wanted.height = desktop.height;
    return wanted;
}

// Premultiplied, as compositors take it.
std::uint32_t Overlay::backgroundPixel() const {
    if (form == Form::solid)
        return style.background == WindowColour::red ? 0xff0000
                                                     : owner.connection.screenInfo().black_pixel;
    if (style.background == WindowColour::clear) return 0;
    const auto alpha = static_cast<std::uint32_t>(std::lround(style.alpha * 255.0f));
    return style.background == WindowColour::red ? (alpha << 24 | alpha << 16) : alpha << 24;
}

// The buttons are selected and nothing is passed on to the parent: a click that reached the root
// would open the window manager's menu.
void Overlay::make() {
    form = wantedForm();
    window = xcb_generate_id(xcb());
    area = wantedArea();
    const bool inputOnly = form == Form::gammaAndCatcher || form == Form::catcher;
    const std::uint32_t events = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;
    const std::uint32_t kept = events | XCB_EVENT_MASK_POINTER_MOTION |
                               XCB_EVENT_MASK_BUTTON_MOTION | XCB_EVENT_MASK_KEY_PRESS |
                               XCB_EVENT_MASK_KEY_RELEASE;
    if (inputOnly) {
        const std::uint32_t values[] = {1, events, kept};
        xcb_create_window(xcb(), 0, window, owner.connection.root(), area.x, area.y, area.width,
                          area.height, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_DONT_PROPAGATE,
                          values);
    } else {
        const xcb_screen_t& screen = owner.connection.screenInfo();
        const bool blend = form == Form::translucent;
        const std::uint32_t values[] = {backgroundPixel(),
                                        0,
                                        1,
                                        events,
                                        kept,
                                        blend ? owner.translucent.colormap
                                              : screen.default_colormap};
        xcb_create_window(xcb(), blend ? owner.translucent.depth : screen.root_depth, window,
                          owner.connection.root(), area.x, area.y, area.width, area.height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          blend ? owner.translucent.id : screen.root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                              XCB_CW_EVENT_MASK | XCB_CW_DONT_PROPAGATE | XCB_CW_COLORMAP,
                          values);
    }
    setHints();
    setInputShape();
    thinOut();
    setOpacity();
    drawPicture();
}

// Where nothing blends, a window that should be half there is there in every second row, so that
// the desktop under it can still be read. A line is too thin to lose rows.
void Overlay::thinOut() {
    if (form != Form::solid) return;
    constexpr int lineWidth = 8;
    std::vector<xcb_rectangle_t> rows;
    if (std::min(area.width, area.height) <= lineWidth || style.alpha >= 1) {
        rows.push_back({0, 0, area.width, area.height});
    } else {
        const auto before = [this](int row) { return std::floor(row * style.alpha); };
        for (int row = 0; row < area.height; ++row)
            if (before(row + 1) > before(row))
                rows.push_back({0, static_cast<std::int16_t>(row), area.width, 1});
    }
    xcb_shape_rectangles(xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_YX_BANDED, window, 0, 0,
                         static_cast<std::uint32_t>(rows.size()), rows.data());
}

// A picture takes the place of the background. It is drawn anew for each size.
void Overlay::drawPicture() {
    shaped.reset();
    const bool blend = form == Form::translucent;
    if (style.image.empty() || (!blend && form != Form::catcher)) return;
    const std::uint8_t depth =
        blend ? owner.translucent.depth : owner.connection.screenInfo().root_depth;
    const auto picture = owner.openPicture(style.image, depth, area);
    if (!picture) return;
    if (!blend) {
        shaped.emplace(owner.connection, *picture, area);
        return;
    }
    // The server keeps the pixels for as long as the window has them as its background.
    const Pixmap pixels = uploadTranslucent(owner.connection, *picture, area.width, area.height);
    const std::uint32_t background = pixels.id();
    xcb_change_window_attributes(xcb(), window, XCB_CW_BACK_PIXMAP, &background);
    xcb_clear_area(xcb(), 0, window, 0, 0, 0, 0);
}

// A shape cannot fade: it is there from half strength on.
void Overlay::showPicture() {
    if (shaped) shaped->show(visible && style.alpha >= 0.5f);
}

// The compositor scales a picture; it need not be sent again for each step of a fade.
void Overlay::setOpacity() {
    if (form != Form::translucent || style.image.empty()) return;
    const auto opacity = static_cast<std::uint32_t>(std::llround(style.alpha * 4294967295.0));
    setProperty<1>(xcb(), window, owner.connection.atom(AtomName::netWmWindowOpacity),
                   XCB_ATOM_CARDINAL, {opacity});
}

void Overlay::addHandles(std::vector<xcb_window_t>& handles) const {
    handles.push_back(window);
    if (shaped) handles.push_back(shaped->handle());
}

void Overlay::unmake() {
    shaped.reset();
    if (window != XCB_NONE) xcb_destroy_window(xcb(), window);
    window = XCB_NONE;
    owner.gamma.release(this);
}

void Overlay::setHints() {
    const Connection& x = owner.connection;
    auto atom = [&](AtomName name) { return x.atom(name); };
    const auto setText = [&](xcb_atom_t property, xcb_atom_t type, const std::string& text) {
        xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, owner.name + '\0' + owner.name + '\0');
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, owner.name);
    setText(atom(AtomName::netWmName), atom(AtomName::utf8String), owner.name);
    // Input false, so that a manager that looks at it gives no focus.
    setProperty<9>(xcb(), window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, {1, 0});
    setProperty<1>(xcb(), window, atom(AtomName::netWmWindowType), XCB_ATOM_ATOM,
                   {atom(AtomName::netWmWindowTypeNotification)});
    setProperty<4>(xcb(), window, atom(AtomName::netWmState), XCB_ATOM_ATOM,
                   {atom(AtomName::netWmStateAbove), atom(AtomName::netWmStateSticky),
                    atom(AtomName::netWmStateSkipTaskbar), atom(AtomName::netWmStateSkipPager)});
    setProperty<1>(xcb(), window, atom(AtomName::netWmDesktop), XCB_ATOM_CARDINAL, {0xffffffff});
    constexpr std::uint32_t keepComposited = 2;
    setProperty<1>(xcb(), window, atom(AtomName::netWmBypassCompositor), XCB_ATOM_CARDINAL,
                   {keepComposited});
    // A shadow would fall on the neighbouring monitor.
    setProperty<1>(xcb(), window, atom(AtomName::comptonShadow), XCB_ATOM_CARDINAL, {0});
}

void Overlay::setInputShape() {
    if (ignoresMouse)
        xcb_shape_rectangles(xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0, nullptr);
    else
        xcb_shape_mask(xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, window, 0, 0, XCB_NONE);
}

void Overlay::updateGamma() {
    if (!visible || form != Form::gammaAndCatcher) {
        owner.gamma.release(this);
        return;
    }
    auto crtcs = owner.outputs.litAlone(style.frame);
    if (crtcs.empty() && style.alpha > 0)
        owner.gamma.tell("a monitor has no output to itself and stays bright, though no click goes "
                         "through; with a compositor such as picom it would be dark");
    owner.gamma.darken(this, std::move(crtcs), style.alpha);
}

void Overlay::setFrame(Rect frame) {
    if (style.frame == frame && !style.seenAt) return;
    style.frame = frame;
    style.seenAt.reset();
    place();
}

void Overlay::place() {
    if (window == XCB_NONE) return;
    const xcb_rectangle_t before = std::exchange(area, wantedArea());
    const std::uint32_t values[] = {static_cast<std::uint32_t>(area.x),
                                    static_cast<std::uint32_t>(area.y), area.width, area.height};
    xcb_configure_window(xcb(), window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    if (area.width != before.width || area.height != before.height) {
        thinOut();
        drawPicture();
        showPicture();
    } else if (shaped) {
        shaped->moveTo(area.x, area.y);
    }
    updateGamma();
    owner.connection.flush();
}

void Overlay::setAlpha(float alpha) {
    style.alpha = std::clamp(alpha, 0.0f, 1.0f);
    if (window == XCB_NONE) return;
    setOpacity();
    showPicture();
    thinOut();
    if (form == Form::translucent && style.image.empty()) {
        const std::uint32_t pixel = backgroundPixel();
        xcb_change_window_attributes(xcb(), window, XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(xcb(), 0, window, 0, 0, 0, 0);
    }
    updateGamma();
    owner.connection.flush();
}

void Overlay::setIgnoresMouseEvents(bool ignores) {
    ignoresMouse = ignores;
    if (window == XCB_NONE) return;
    setInputShape();
    owner.connection.flush();
}

void Overlay::makeKeyAndOrderFront() {
    if (window == XCB_NONE) make();
    if (visible) {
        putOnTop(owner.connection, window);
    } else {
        if (number == 0) number = ++owner.lastId;
        visible = true;
        owner.visibilityChanged();
        map();
    }
    owner.connection.flush();
}

bool Overlay::isSeen() const {
    return visible && (style.kind != WindowKind::marker || owner.markersSeen);
}

void Overlay::markersChanged() {
    if (style.kind != WindowKind::marker || !visible) return;
    if (owner.markersSeen)
        map();
    else
        xcb_unmap_window(xcb(), window);
}

void Overlay::map() {
    if (!isSeen()) return;
    putOnTop(owner.connection, window);
    xcb_map_window(xcb(), window);
    showPicture();
    updateGamma();
}

void Overlay::orderOut() {
    if (!visible) return;
    visible = false;
    owner.visibilityChanged();
    xcb_unmap_window(xcb(), window);
    showPicture();
    updateGamma();
    owner.connection.flush();
}

void Overlay::changeOver() {
    if (window == XCB_NONE || wantedForm() == form) return;
    unmake();
    make();
    if (visible) map();
}

} // namespace platform::x11
