#include "program/bus/DoctorReport.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/timerfd.h>
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
    close(output);
    close(alarm);
    if (!isRunning) return;
    (void)::kill(process, SIGKILL);
    (void)::waitpid(process, nullptr, 0);
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
    isLate = false;
    text.clear();
    setAlarm();
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
    if (text.size() >= longest) (void)::kill(process, SIGKILL);
    awaitEnd();
}

// Without one it is waited for as long as it takes.
void DoctorReport::setAlarm() {
    alarm = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    if (alarm < 0) return;
    constexpr long thousand = 1'000;
    itimerspec when{};
    when.it_value.tv_sec = static_cast<time_t>(limit.count() / thousand);
    when.it_value.tv_nsec = static_cast<long>(limit.count() % thousand) * thousand * thousand;
    (void)::timerfd_settime(alarm, 0, &when, nullptr);
    descriptors.watchReadable(alarm, [this] { stop(); });
}

void DoctorReport::close(int& descriptor) {
    if (descriptor < 0) return;
    descriptors.unwatch(descriptor);
    ::close(std::exchange(descriptor, -1));
}

void DoctorReport::stop() {
    isLate = true;
    close(alarm);
    (void)::kill(process, SIGKILL);
    awaitEnd();
}

// What it has started itself may have its output, and keep that open.
void DoctorReport::awaitEnd() {
    close(output);
    output = ::pidfd_open(process, 0);
    if (output < 0)
        end();
    else
        descriptors.watchReadable(output, [this] { end(); });
}

void DoctorReport::end() {
    close(output);
    close(alarm);
    isRunning = false;
    int status = 0;
    (void)::waitpid(process, &status, 0);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    const bool isWhole = WIFEXITED(status) && WEXITSTATUS(status) <= lastWithReport;
    if (isWhole && !text.empty())
        answer({text, {}});
    else if (isLate)
        answer({std::nullopt, executable + " did not come to an end in time."});
    else
        answer({std::nullopt, executable + " ended without a report."});
}

void DoctorReport::answer(const bus::ProductObject::Report& report) {
    for (const Done& done : std::exchange(waiting, {}))
        done(report);
}
