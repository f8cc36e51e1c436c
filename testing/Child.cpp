#include "testing/Child.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

// glibc 2.36 declares these without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace support {

namespace {

constexpr int inheritedNumber = 3;

// Between fork and exec only calls that are safe after a fork in a program with threads.
[[noreturn]] void becomeCommand(char** arguments, char** environment, int output, int errors,
                                int extra, int deathSignal, pid_t parent, int failure) {
    prctl(PR_SET_PDEATHSIG, deathSignal);
    if (getppid() != parent) _exit(127);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    const int nothing = open("/dev/null", O_RDONLY);
    if (nothing >= 0) dup2(nothing, STDIN_FILENO);
    if (extra == inheritedNumber)
        fcntl(extra, F_SETFD, 0);
    else if (extra >= 0)
        dup2(extra, inheritedNumber);
    execvpe(arguments[0], arguments, environment);
    const int error = errno;
    [[maybe_unused]] const auto written = write(failure, &error, sizeof error);
    _exit(127);
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

int statusOf(const siginfo_t& info) {
    return info.si_code == CLD_EXITED ? info.si_status : -info.si_status;
}

} // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        reset();
        value = other.release();
    }
    return *this;
}

int Descriptor::release() {
    return std::exchange(value, -1);
}

void Descriptor::reset() {
    if (value >= 0) close(value);
    value = -1;
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

bool waitReadable(int descriptor, Clock::time_point deadline) {
    for (;;) {
        pollfd entry{descriptor, POLLIN, 0};
        const int count = poll(&entry, 1, millisecondsUntil(deadline));
        if (count > 0) return true;
        if (count == 0) return false;
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "poll");
    }
}

std::optional<std::string> readLine(int descriptor, Clock::time_point deadline) {
    std::string line;
    while (waitReadable(descriptor, deadline)) {
        char letter = 0;
        if (read(descriptor, &letter, 1) != 1) return std::nullopt;
        if (letter == '\n') return line;
        line += letter;
    }
    return std::nullopt;
}

ChildProcess::ChildProcess(const Start& start)
    : commandName(start.command.at(0)),
      patience(start.patience),
      outputPipe(makePipe()),
      errorPipe(makePipe()),
      stopPipe(makePipe()) {
    std::vector<std::string> arguments = start.command;
    std::vector<std::string> entries;
    for (const auto& [name, value] : start.environment)
        entries.push_back(name + "=" + value);
    const std::vector<char*> argumentPointers = pointers(arguments);
    const std::vector<char*> entryPointers = pointers(entries);
    Pipe failure = makePipe();
    // Above the number that the child is given, so that handing it over overwrites nothing.
    Descriptor failureEnd(fcntl(failure.writeEnd.get(), F_DUPFD_CLOEXEC, inheritedNumber + 1));
    failure.writeEnd.reset();

    const pid_t parent = getpid();
    process = fork();
    if (process < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (process == 0)
        becomeCommand(const_cast<char**>(argumentPointers.data()),
                      const_cast<char**>(entryPointers.data()), outputPipe.writeEnd.get(),
                      errorPipe.writeEnd.get(), start.extraDescriptor, start.deathSignal, parent,
                      failureEnd.get());
    outputPipe.writeEnd.reset();
    errorPipe.writeEnd.reset();
    failureEnd.reset();
    handle = Descriptor(pidfd_open(process, 0));

    int error = 0;
    if (read(failure.readEnd.get(), &error, sizeof error) == sizeof error) {
        waitpid(process, nullptr, 0);
        throw std::runtime_error("cannot run " + commandName + ": " +
                                 std::generic_category().message(error));
    }
    collector = std::thread([this] { collect(); });
}

ChildProcess::~ChildProcess() {
    end();
    stopPipe.writeEnd.reset();
    collector.join();
}

bool ChildProcess::running() {
    return !wait(milliseconds(0));
}

void ChildProcess::signal(int number) {
    if (!status) pidfd_send_signal(handle.get(), number, nullptr, 0);
}

std::optional<int> ChildProcess::wait(milliseconds limit) {
    if (status) return status;
    if (!waitReadable(handle.get(), Clock::now() + limit)) return std::nullopt;
    siginfo_t info{};
    if (waitid(P_PIDFD, static_cast<id_t>(handle.get()), &info, WEXITED) == 0)
        status = statusOf(info);
    const auto isRead = [](const Descriptor& pipe) {
        int left = 0;
        return ioctl(pipe.get(), FIONREAD, &left) != 0 || left == 0;
    };
    std::unique_lock lock(guard);
    arrived.wait_for(lock, generous, [&] {
        return atEnd || (isRead(outputPipe.readEnd) && isRead(errorPipe.readEnd));
    });
    return status;
}

std::string ChildProcess::output() const {
    const std::lock_guard lock(guard);
    return outputText;
}

std::string ChildProcess::errors() const {
    const std::lock_guard lock(guard);
    return errorText;
}

bool ChildProcess::waitForText(std::string_view text, milliseconds limit) {
    const auto occurs = [&] {
        return outputText.find(text) != std::string::npos ||
               errorText.find(text) != std::string::npos;
    };
    std::unique_lock lock(guard);
    arrived.wait_for(lock, limit, [&] { return atEnd || occurs(); });
    return occurs();
}

int ChildProcess::end() {
    if (!wait(milliseconds(0))) {
        signal(SIGTERM);
        signal(SIGCONT);
        if (!wait(patience)) {
            signal(SIGKILL);
            wait();
        }
    }
    return status.value_or(-SIGKILL);
}

void ChildProcess::collect() {
    std::array<pollfd, 3> entries{pollfd{outputPipe.readEnd.get(), POLLIN, 0},
                                  pollfd{errorPipe.readEnd.get(), POLLIN, 0},
                                  pollfd{stopPipe.readEnd.get(), POLLIN, 0}};
    while (entries[0].fd >= 0 || entries[1].fd >= 0) {
        if (poll(entries.data(), entries.size(), -1) < 0) continue;
        for (std::size_t index = 0; index < 2; ++index) {
            if (entries[index].fd < 0 || entries[index].revents == 0) continue;
            std::array<char, 4096> block{};
            // What has left the pipe is in the text for everybody else.
            const std::lock_guard lock(guard);
            const auto count = read(entries[index].fd, block.data(), block.size());
            if (count <= 0)
                entries[index].fd = -1;
            else
                (index == 0 ? outputText : errorText)
                    .append(block.data(), static_cast<std::size_t>(count));
            arrived.notify_all();
        }
        // A grandchild may keep the pipes open for ever: only what is there already is read.
        if (entries[0].revents == 0 && entries[1].revents == 0 && entries[2].revents != 0) break;
    }
    const std::lock_guard lock(guard);
    atEnd = true;
    arrived.notify_all();
}

Announced startServer(const std::vector<std::string>& command, const Environment& environment) {
    Pipe pipe = makePipe();
    auto process =
        std::make_unique<ChildProcess>(ChildProcess::Start{.command = command,
                                                           .environment = environment,
                                                           .extraDescriptor = pipe.writeEnd.get(),
                                                           .deathSignal = SIGTERM});
    pipe.writeEnd.reset();
    auto line = readLine(pipe.readEnd.get(), Clock::now() + generous);
    if (line) return {std::move(process), std::move(*line)};
    process->end();
    throw std::runtime_error(process->name() + " did not start:\n" + process->output() +
                             process->errors());
}

std::vector<pid_t> childrenOf(pid_t parent, std::string_view name) {
    const std::string id = std::to_string(parent);
    std::ifstream list("/proc/" + id + "/task/" + id + "/children");
    std::vector<pid_t> found;
    for (pid_t child = 0; list >> child;) {
        std::string itsName;
        std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), itsName);
        if (itsName == name) found.push_back(child);
    }
    return found;
}

Stopped::Stopped(pid_t wanted) : process(wanted), handle(pidfd_open(wanted, 0)) {
    if (handle.get() < 0) throw std::runtime_error("no process " + std::to_string(process));
    pidfd_send_signal(handle.get(), SIGSTOP, nullptr, 0);
    if (!waitUntil([this] { return stillIs(); }))
        throw std::runtime_error("process " + std::to_string(process) + " does not stop");
}

Stopped::~Stopped() {
    pidfd_send_signal(handle.get(), SIGCONT, nullptr, 0);
}

bool Stopped::stillIs() const {
    std::string status;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/stat"), status);
    // The state comes behind the name, which is in parentheses and may hold any letter.
    const auto name = status.rfind(") ");
    return name != std::string::npos && status[name + 2] == 'T';
}

ProcessSweep::ProcessSweep(const std::string& entry, pid_t except) {
    for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
        const std::string name = folder.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const pid_t pid = static_cast<pid_t>(std::stol(name));
        if (pid == getpid() || pid == except) continue;
        // The handle first: the process that it names cannot change afterwards.
        Descriptor process(pidfd_open(pid, 0));
        std::ifstream file(folder.path() / "environ", std::ios::binary);
        const std::string environment{std::istreambuf_iterator<char>(file), {}};
        const std::string separated = std::string(1, '\0') + environment;
        if (process.get() >= 0 &&
            separated.find(std::string(1, '\0') + entry + '\0') != std::string::npos)
            processes.push_back(std::move(process));
    }
}

void ProcessSweep::end() {
    for (const Descriptor& process : processes)
        pidfd_send_signal(process.get(), SIGTERM, nullptr, 0);
    for (const Descriptor& process : processes) {
        if (waitReadable(process.get(), Clock::now() + milliseconds(3'000))) continue;
        pidfd_send_signal(process.get(), SIGKILL, nullptr, 0);
        waitReadable(process.get(), Clock::now() + generous);
    }
    // Only now, when no parent is left in between, are all of them children of this process.
    for (const Descriptor& process : processes) {
        siginfo_t info{};
        waitid(P_PIDFD, static_cast<id_t>(process.get()), &info, WEXITED);
    }
    processes.clear();
}

} // namespace support
