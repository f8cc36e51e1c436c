// Holds the lock of the file that it is given, heeds no SIGTERM, and stops itself.

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const int file = open(argv[1], O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || flock(file, LOCK_EX | LOCK_NB) != 0) return 1;
    std::signal(SIGTERM, SIG_IGN);
    raise(SIGSTOP);
    for (;;)
        pause();
}
