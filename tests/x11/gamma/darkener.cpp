// usage: x11_darkener GAMMA-GUARD ALPHA; covers every monitor, says "shown" and waits to be killed.

#include "x11/Session.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    x11tests::Session session("", argv[1], true, std::getenv("XDG_RUNTIME_DIR"));
    std::vector<std::unique_ptr<platform::Window>> windows;
    for (const platform::Screen& screen : session.displays.screens()) {
        platform::WindowStyle style;
        style.frame = screen.frame;
        style.alpha = std::strtof(argv[2], nullptr);
        style.background = platform::WindowColour::black;
        windows.push_back(session.windows.create(style));
        windows.back()->makeKeyAndOrderFront();
    }
    session.connection.sync();
    std::puts("shown");
    std::fflush(stdout);
    session.loop.run();
}
