#include "program/helper/StartedProgram.h"

#include <cerrno>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

// glibc 2.36 declares these without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace helper {

StartedProgram::~StartedProgram() {
    if (process) descriptors.unwatch(process.get());
}

int StartedProgram::start(std::vector<std::string> command,
                          std::function<void(const std::string& how)> ended) {
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t pid = 0;
    if (const int error =
            ::posix_spawn(&pid, arguments[0], nullptr, nullptr, arguments.data(), environ))
        return error;
    whenEnded = std::move(ended);
    process = platform::linux::FileHandle(::pidfd_open(pid, 0));
    if (!process) return errno;
    descriptors.watchReadable(process.get(), [this] { reap(); });
    return 0;
}

void StartedProgram::reap() {
    siginfo_t info{};
    if (::waitid(P_PIDFD, static_cast<id_t>(process.get()), &info, WEXITED) != 0) return;
    descriptors.unwatch(process.get());
    process = platform::linux::FileHandle();
    const bool exited = info.si_code == CLD_EXITED;
    whenEnded((exited ? "ended with status " : "was ended by signal ") +
              std::to_string(info.si_status));
}

} // namespace helper
