// Gamma outlives the client that set it. This process answers whoever started it for as long as
// that lives, and puts the ramps back when the other end of its standard input has gone, however
// that ended. What is to be put back lies in a file; the end of the input is only the occasion to
// look.
//
// usage: gamma-guard DISPLAY FOLDER SERVER OWNER

#include "platform/x11/overlay/gammaguard/Rescue.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace {

using namespace platform::x11::gammaguard;

/// Gives each byte back until there are no more.
void answer() {
    char byte = 0;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, &byte, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return;
        (void)!write(STDIN_FILENO, &byte, 1);
    }
}

/// A process that ends lets its lock go a moment after its end of the socket. False where the ramps
/// are no affair of this process any more.
bool lockOwn(RampFile& file, const std::string& owner) {
    constexpr int shortTime = 10; // milliseconds
    for (;;) {
        const auto kept = file.read();
        if (!kept || kept->owner != owner) return false;
        // Where there can be no lock, the ramps matter more.
        if (file.lock() != EWOULDBLOCK) return true;
        poll(nullptr, 0, shortTime);
    }
}

xcb_window_t rootOf(xcb_connection_t* c, int screen) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    while (screen-- > 0 && screens.rem > 1)
        xcb_screen_next(&screens);
    return screens.data->root;
}

} // namespace

int main(int argc, char** argv) {
    for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_IGN);
    if (argc < 5) return 2;
    answer();

    RampFile file(argv[2], argv[3]);
    const std::string owner = argv[4];
    if (!lockOwn(file, owner)) return 0;
    int screen = 0;
    xcb_connection_t* const c = xcb_connect(argv[1], &screen);
    // What was written before the lock was there counts no more.
    const auto kept = file.read();
    if (!xcb_connection_has_error(c) && kept && kept->owner == owner &&
        serverName(c, rootOf(c, screen)) == argv[3] && putBack(c, kept->ramps))
        file.remove();
    xcb_disconnect(c);
    return 0;
}
