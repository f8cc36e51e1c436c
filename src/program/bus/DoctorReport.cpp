#include "program/bus/DoctorReport.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

// glibc 2.36 declares these without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace {

constexpr std::size_t longest = std::size_t{1} << 20;

/// Exit statuses up to this one come with a report: what it found may be bad.
constexpr int lastWithReport = 1;

} // namespace

DoctorReport::~DoctorReport() {
    if (output >= 0) closeOutput();
}

void DoctorReport::ask(Done done) {
    waiting.push_back(std::move(done));
    if (isRunning) return;
    if (const int error = start())
        answer({std::nullopt, executable + " cannot be started: " + std::strerror(error)});
}

/// Returns 0 or an errno number.
int DoctorReport::start() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return errno;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::string words[] = {executable, "--json", "--product", productName};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                         nullptr};
    const int error =
        ::posix_spawn(&process, executable.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (error != 0) {
        ::close(ends[0]);
        return error;
    }
    isRunning = true;
    text.clear();
    output = ends[0];
    descriptors.watchReadable(output, [this] { read(); });
    return 0;
}

void DoctorReport::read() {
    char block[4096];
    const ssize_t length = ::read(output, block, sizeof block);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (length > 0 && text.size() < longest) {
        text.append(block, static_cast<std::size_t>(length));
        return;
    }
    closeOutput();
    awaitEnd();
}

void DoctorReport::closeOutput() {
    descriptors.unwatch(output);
    ::close(std::exchange(output, -1));
}

// It has closed its output, or said more than anybody reads.
void DoctorReport::awaitEnd() {
    if (text.size() >= longest) (void)::kill(process, SIGKILL);
    output = ::pidfd_open(process, 0);
    if (output < 0)
        end();
    else
        descriptors.watchReadable(output, [this] { end(); });
}

void DoctorReport::end() {
    if (output >= 0) closeOutput();
    isRunning = false;
    int status = 0;
    (void)::waitpid(process, &status, 0);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    const bool isWhole = WIFEXITED(status) && WEXITSTATUS(status) <= lastWithReport;
    if (isWhole && !text.empty())
        answer({text, {}});
    else
        answer({std::nullopt, executable + " ended without a report."});
}

void DoctorReport::answer(const bus::ProductObject::Report& report) {
    for (const Done& done : std::exchange(waiting, {}))
        done(report);
}
