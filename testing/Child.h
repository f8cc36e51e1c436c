#pragma once

#include "testing/Wait.h"

#include <condition_variable>
#include <csignal>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace support {

using Environment = std::map<std::string, std::string>;

/// A file descriptor that closes itself.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : value(descriptor) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : value(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;

    int get() const { return value; }
    int release();
    void reset();

  private:
    int value = -1;
};

struct Pipe {
    Descriptor readEnd, writeEnd;
};
/// Both ends are closed on exec. Throws std::system_error.
Pipe makePipe();

/// Waits until `descriptor` can be read or is at its end; false when the time is up.
bool waitReadable(int descriptor, Clock::time_point deadline);

/// One line from `descriptor`, read byte by byte; nothing when it ends or the time is up.
std::optional<std::string> readLine(int descriptor, Clock::time_point deadline);

/// A process started by the tests. It dies with the thread that started it, at the latest; the
/// destructor ends it (SIGTERM, and SIGKILL when it does not heed that) and reaps it.
class ChildProcess {
  public:
    struct Start {
        std::vector<std::string> command; ///< looked up in PATH
        Environment environment;
        int extraDescriptor = -1;     ///< becomes descriptor 3 of the child
        int deathSignal = SIGKILL;    ///< sent to the child when the starting thread dies
        milliseconds patience{5'000}; ///< between SIGTERM and SIGKILL when it is ended
    };

    /// Throws std::runtime_error when the command cannot be run.
    explicit ChildProcess(const Start& start);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return process; }
    const std::string& name() const { return commandName; }
    bool running();
    void signal(int number);

    /// The exit status, or minus the number of the signal that ended it; nothing when it still
    /// runs after `limit`. All that it has written is there then.
    std::optional<int> wait(milliseconds limit = generous);

    /// What it has written so far.
    std::string output() const;
    std::string errors() const;

    /// Waits until `text` occurs in what it wrote (output or errors); false when it ended or the
    /// time is up without it.
    bool waitForText(std::string_view text, milliseconds limit = generous);

    /// Ends it now; the destructor does no more. The status as from wait.
    int end();

  private:
    void collect();

    std::string commandName;
    milliseconds patience;
    pid_t process = -1;
    Descriptor handle; ///< readable when the process has ended
    Pipe outputPipe, errorPipe, stopPipe;
    std::optional<int> status;
    mutable std::mutex guard;
    std::condition_variable arrived;
    std::string outputText, errorText;
    bool atEnd = false;
    std::thread collector;
};

/// The children of a process whose executable has that name. The kernel names a new one a moment
/// after its parent goes on.
std::vector<pid_t> childrenOf(pid_t parent, std::string_view name);

/// Stops a process, which may be anybody's, for as long as the object lives.
class Stopped {
  public:
    /// Returns when it has stopped. Throws std::runtime_error when there is no such process.
    explicit Stopped(pid_t process);
    ~Stopped();
    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;

    /// False where it has been killed all the same.
    bool stillIs() const;

  private:
    pid_t process;
    Descriptor handle;
};

/// A server that told where it is reached.
struct Announced {
    std::unique_ptr<ChildProcess> process;
    std::string line;
};
/// Starts a server that writes a line to its descriptor 3 when it is ready, and waits for that. The
/// death signal is SIGTERM, so that it cleans up even when the test has crashed. Throws
/// std::runtime_error with what it wrote otherwise when no line comes.
Announced startServer(const std::vector<std::string>& command, const Environment& environment);

/// Every process that has `entry` ("NAME=value") in its environment when the object is made: what
/// the bus started for a desktop is found in no other way.
class ProcessSweep {
  public:
    /// `except`: a process that is left alone.
    ProcessSweep(const std::string& entry, pid_t except);

    /// Ends them and reaps those that are, or became, children of this process (which needs
    /// PR_SET_CHILD_SUBREAPER for the latter). Those that ended already are only reaped.
    void end();

  private:
    std::vector<Descriptor> processes;
};

} // namespace support
