#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

// bare_client warp|drain|sample LEFT TOP RIGHT BOTTOM: an X client without a toolkit that does one
// thing with raw motion, for comparison.
//
//   warp    asks for the cursor's place at every event, and warps it back into the rectangle
//   drain   leaves the socket alone and reads what has come sixty times a second
//   sample  waits for one event, then asks for no more of them and looks at the cursor sixty times
//           a second until it has not moved for four looks

namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

struct Client {
    xcb_connection_t* x = xcb_connect(nullptr, nullptr);
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    int left = 0, top = 0, right = 0, bottom = 0;

    void select(std::uint32_t events) const {
        struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
        xcb_input_xi_select_events(x, root, 1, &selection.head);
        xcb_flush(x);
    }

    Reply<xcb_query_pointer_reply_t> place() const {
        return Reply<xcb_query_pointer_reply_t>(
            xcb_query_pointer_reply(x, xcb_query_pointer(x, root), nullptr));
    }

    /// Where it was.
    std::pair<int, int> keepInside() const {
        const auto at = place();
        if (!at) std::exit(1);
        const std::pair<int, int> seen{at->root_x, at->root_y};
        const bool inside =
            at->root_x >= left && at->root_x < right && at->root_y >= top && at->root_y < bottom;
        if (inside) return seen;
        const auto backX = static_cast<std::int16_t>(at->root_x >= right ? right - 1 : left + 1);
        xcb_warp_pointer(x, XCB_NONE, root, 0, 0, 0, 0, backX, at->root_y);
        xcb_flush(x);
        return seen;
    }

    bool readAll() const {
        bool any = false;
        while (const auto event = Reply<xcb_generic_event_t>(xcb_poll_for_event(x)))
            any = true;
        return any;
    }
};

class Frames {
  public:
    Frames() { clock_gettime(CLOCK_MONOTONIC, &next); }
    void waitForNext() {
        constexpr long second = 1'000'000'000;
        next.tv_nsec += second / 60;
        if (next.tv_nsec >= second) {
            next.tv_nsec -= second;
            ++next.tv_sec;
        }
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
    }

  private:
    timespec next{};
};

constexpr int looksUntilRest = 4;

void warpAtEach(const Client& client) {
    client.select(XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
    while (const auto event = Reply<xcb_generic_event_t>(xcb_wait_for_event(client.x)))
        client.keepInside();
}

void drainByFrame(const Client& client) {
    client.select(XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
    while (const auto first = Reply<xcb_generic_event_t>(xcb_wait_for_event(client.x))) {
        Frames frames;
        for (int empty = 0; empty < looksUntilRest;) {
            client.keepInside();
            frames.waitForNext();
            empty = client.readAll() ? 0 : empty + 1;
        }
    }
}

void sampleByFrame(const Client& client) {
    for (;;) {
        client.select(XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
        if (!Reply<xcb_generic_event_t>(xcb_wait_for_event(client.x))) return;
        client.select(0);
        Frames frames;
        std::pair<int, int> before{};
        for (int empty = 0; empty < looksUntilRest;) {
            const auto now = client.keepInside();
            empty = now == before ? empty + 1 : 0;
            before = now;
            frames.waitForNext();
        }
        client.readAll();
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 6) return 2;
    Client client;
    if (xcb_connection_has_error(client.x) != 0) return 1;
    client.left = std::atoi(arguments[2]);
    client.top = std::atoi(arguments[3]);
    client.right = std::atoi(arguments[4]);
    client.bottom = std::atoi(arguments[5]);
    const Reply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        client.x, xcb_input_xi_query_version(client.x, 2, 2), nullptr));
    if (std::strcmp(arguments[1], "warp") == 0) warpAtEach(client);
    if (std::strcmp(arguments[1], "drain") == 0) drainByFrame(client);
    if (std::strcmp(arguments[1], "sample") == 0) sampleByFrame(client);
    return 0;
}
