#include "pictures/Backdrop.h"

namespace pictures {

using support::Area;

namespace {

/// 0xrrggbb each.
struct Palette {
    std::uint32_t page, desk, panel, mark, paper, title, text;
};
// The page is the guide's own, so that what belongs to no monitor is not seen in the guide.
constexpr Palette light{0xfdfdfc, 0x6d8fb3, 0xe4e7eb, 0x8a96a3, 0xfafbfc, 0xd5dde6, 0xb9c4d0};
constexpr Palette night{0x17191c, 0x34506d, 0x14181d, 0x6c7783, 0x2b3139, 0x3b4550, 0x5d6874};

const Palette& paletteOf(bool dark) {
    return dark ? night : light;
}

} // namespace

std::string Backdrop::panelColour(bool dark) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%06x", paletteOf(dark).panel);
    return text;
}

Backdrop::Backdrop(const std::string& display, const support::Layout& layout, bool isDark)
    : x(display), dark(isDark), picture(xcb_generate_id(x.get())), brush(xcb_generate_id(x.get())) {
    const Palette& palette = paletteOf(dark);
    const Area all = support::boundsOf(layout);
    xcb_create_pixmap(x.get(), x.screen().root_depth, picture, x.root(),
                      static_cast<std::uint16_t>(all.width),
                      static_cast<std::uint16_t>(all.height));
    xcb_create_gc(x.get(), brush, picture, 0, nullptr);
    fill(all, palette.page);
    for (const support::Monitor& monitor : layout) {
        const Area& at = monitor.area;
        fill(at, palette.desk);
        paintWindow({at.x + at.width / 16, at.y + at.height / 3, at.width / 2, at.height / 2});
        paintWindow(
            {at.x + at.width / 2, at.y + at.height / 2, at.width * 7 / 16, at.height * 2 / 5});
    }
    const Area& first = layout.front().area;
    fill({first.x, first.y, first.width, panelHeight}, palette.panel);
    for (const int left : {10, 76, 126})
        fill({first.x + left, first.y + 10, left == 10 ? 50 : 34, 8}, palette.mark);
    xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXMAP, &picture);
    xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
    // Compositors paint what this names.
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), x.atom("_XROOTPMAP_ID"),
                        XCB_ATOM_PIXMAP, 32, 1, &picture);
    x.sync();
}

void Backdrop::fill(const Area& area, std::uint32_t colour) const {
    const xcb_rectangle_t rectangle{
        static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
        static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
    xcb_change_gc(x.get(), brush, XCB_GC_FOREGROUND, &colour);
    xcb_poly_fill_rectangle(x.get(), picture, brush, 1, &rectangle);
}

void Backdrop::paintWindow(const Area& window) const {
    const Palette& palette = paletteOf(dark);
    constexpr int titleHeight = 16, margin = 16, lineHeight = 6, step = 14;
    fill(window, palette.paper);
    fill({window.x, window.y, window.width, titleHeight}, palette.title);
    int length = window.width - 2 * margin;
    for (int y = window.y + titleHeight + margin;
         y + lineHeight + margin < window.y + window.height; y += step) {
        fill({window.x + margin, y, length, lineHeight}, palette.text);
        length = length > window.width / 2 ? length * 7 / 8 : window.width - 2 * margin;
    }
}

} // namespace pictures
