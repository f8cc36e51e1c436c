// Gamma outlives the client that set it. This process keeps the ramps that were there before, and
// writes them back when the other end of its standard input has gone, however that ended.

#include "platform/x11/connection/Reply.h"
#include "platform/x11/overlay/gammaguard/Message.h"

#include <cerrno>
#include <csignal>
#include <map>
#include <unistd.h>
#include <vector>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace {

using platform::x11::Reply;
using platform::x11::gammaguard::Header;
using platform::x11::gammaguard::Order;

bool readAll(void* to, std::size_t bytes) {
    auto* at = static_cast<char*>(to);
    while (bytes > 0) {
        const ssize_t got = read(STDIN_FILENO, at, bytes);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        at += got;
        bytes -= static_cast<std::size_t>(got);
    }
    return true;
}

void restore(const char* display, const std::map<std::uint32_t, std::vector<std::uint16_t>>& kept) {
    xcb_connection_t* c = xcb_connect(display, nullptr);
    if (!xcb_connection_has_error(c)) {
        for (const auto& [crtc, ramp] : kept) {
            const std::size_t size = ramp.size() / 3;
            xcb_randr_set_crtc_gamma(c, crtc, static_cast<std::uint16_t>(size), ramp.data(),
                                     ramp.data() + size, ramp.data() + 2 * size);
        }
        // Disconnecting drops what the server has not read yet, so wait for it.
        const Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    }
    xcb_disconnect(c);
}

} // namespace

int main(int argc, char** argv) {
    for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_IGN);

    constexpr std::uint32_t largestRamp = 1 << 16;
    std::map<std::uint32_t, std::vector<std::uint16_t>> kept;
    Header header{};
    while (readAll(&header, sizeof header)) {
        if (header.order == Order::forget) {
            kept.erase(header.crtc);
        } else {
            if (header.size == 0 || header.size >= largestRamp) break;
            std::vector<std::uint16_t> ramp(3 * std::size_t{header.size});
            if (!readAll(ramp.data(), ramp.size() * sizeof ramp[0])) break;
            kept[header.crtc] = std::move(ramp);
        }
    }
    if (!kept.empty()) restore(argc > 1 ? argv[1] : nullptr, kept);
    return 0;
}
