// The compositor keeps what a program ran after the program has gone. This process answers whoever
// started it for as long as that lives, and takes back what its file tells when the other end of
// its standard input has gone, however that ended.
//
// usage: sway-guard FILE

#include "platform/sway/undo/UndoFile.h"

#include <cerrno>
#include <csignal>
#include <unistd.h>

int main(int argc, char** argv) {
    for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_IGN);
    if (argc < 2) return 2;
    char byte = 0;
    for (;;) {
        const ssize_t got = read(STDIN_FILENO, &byte, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        (void)!write(STDIN_FILENO, &byte, 1);
    }
    platform::sway::undoWhenLeft(argv[1]);
    return 0;
}
