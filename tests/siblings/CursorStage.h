#pragma once

#include "testing/desktop/Product.h"
#include "testing/eye/Framebuffer.h"

#include <algorithm>
#include <stdexcept>

namespace desktop {

/// A product on a server whose framebuffer can be read, over a white window, so that it is seen
/// whether the cursor is drawn.
struct CursorStage {
    /// The server's own root window has no cursor.
    CursorStage() {
        if (product.desktop.spawn("xsetroot", {"-cursor_name", "left_ptr"})->wait() != 0)
            throw std::runtime_error("the root window takes no cursor");
    }

    bool isDrawn() const {
        constexpr int reach = 24; // no cursor of the server's own is larger
        const Spot at = product.eye.cursor();
        const auto seen = framebuffer.picture({at.x - reach, at.y - reach, 2 * reach, 2 * reach});
        return std::ranges::any_of(seen.pixels,
                                   [](const Colour& colour) { return !(colour == white); });
    }
    bool isDrawnSoon() const {
        return waitUntil([this] { return isDrawn(); });
    }
    bool isGoneSoon() const {
        return waitUntil([this] { return !isDrawn(); });
    }

    static constexpr Colour white{255, 255, 255};

    testing_support::TempFolder folder;
    Product product{options(folder)};
    support::Framebuffer framebuffer{folder.path()};
    support::TestWindow paper{product.desktop.display(), {0, 0, 1600, 600}, white};

  private:
    static support::PrivateDesktop::Options options(const testing_support::TempFolder& folder) {
        support::PrivateDesktop::Options options;
        options.layout = "800x600+0+0,800x600+800+0";
        options.servers = {support::ServerKind::xvfb};
        options.serverArguments = {"-fbdir", folder.path()};
        return options;
    }
};

} // namespace desktop
