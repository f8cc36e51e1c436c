#include "testing/sway/WaylandClient.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

// Whether the program keeps mice of the kernel's on the first of two monitors, in the compositor
// that it is run in: real_mouse PROGRAM. Prints a line for each point and fails with any of them.
// The program is killed in the end.

namespace {

using support::Witness;
using namespace std::chrono_literals;

class Mouse {
  public:
    explicit Mouse(const char* name) : file(::open("/dev/uinput", O_WRONLY)) {
        ::ioctl(file, UI_SET_EVBIT, EV_KEY);
        ::ioctl(file, UI_SET_KEYBIT, BTN_LEFT);
        ::ioctl(file, UI_SET_KEYBIT, BTN_RIGHT);
        ::ioctl(file, UI_SET_EVBIT, EV_REL);
        ::ioctl(file, UI_SET_RELBIT, REL_X);
        ::ioctl(file, UI_SET_RELBIT, REL_Y);
        uinput_setup setup{};
        setup.id = {BUS_USB, 0x1234, 0x5678, 1};
        std::string(name).copy(setup.name, sizeof setup.name - 1);
        ::ioctl(file, UI_DEV_SETUP, &setup);
        if (::ioctl(file, UI_DEV_CREATE) != 0) throw std::runtime_error("no input device");
    }
    ~Mouse() { ::close(file); }
    Mouse(const Mouse&) = delete;
    Mouse& operator=(const Mouse&) = delete;

    void move(int dx) { send(EV_REL, REL_X, dx); }
    void press(bool down) { send(EV_KEY, BTN_LEFT, down ? 1 : 0); }
    void push(int dx, int steps) {
        for (auto due = support::Clock::now(); steps > 0; --steps) {
            move(dx);
            std::this_thread::sleep_until(due += 4ms);
        }
    }

  private:
    void send(std::uint16_t type, std::uint16_t code, int value) {
        std::array<input_event, 2> events{};
        events[0].type = type;
        events[0].code = code;
        events[0].value = value;
        if (::write(file, events.data(), sizeof events) < 0) throw std::runtime_error("no input");
    }

    int file;
};

/// Whether the program is up and holds a monitor, by its own command.
bool holds(const std::string& program) {
    FILE* const told = ::popen((program + " status 2>&1").c_str(), "r");
    std::string all;
    for (char line[512]; std::fgets(line, sizeof line, told);)
        all += line;
    return ::pclose(told) == 0 && all.find("held Virtual-1\n") != std::string::npos;
}

bool allPassed = true;

void tell(bool passed, const std::string& what) {
    std::cout << (passed ? "ok: " : "FAILED: ") << what << std::endl;
    allPassed = allPassed && passed;
}

} // namespace

int main(int, char** arguments) {
    const std::string socket =
        std::string(std::getenv("XDG_RUNTIME_DIR")) + "/" + std::getenv("WAYLAND_DISPLAY");
    const auto witness = [&](std::size_t output) {
        return std::make_unique<Witness>(socket, output, Witness::Where::aboveEverything, 0);
    };
    Mouse mouse("first mouse");
    const auto left = witness(0);
    auto right = witness(1);
    const auto until = [](auto condition) { return support::waitUntil(condition, 60s); };
    // A device is there when it moves the cursor.
    const auto reaches = [&](Mouse& one, Witness& where, int dx) {
        return until([&] {
            one.push(dx, 5);
            return where.report().isOver;
        });
    };
    tell(reaches(mouse, *right, 40), "without the program the mouse reaches the second monitor");
    tell(reaches(mouse, *left, -40), "and comes back");
    mouse.push(-40, 60);

    const pid_t program = ::fork();
    if (program == 0) {
        ::execl(arguments[1], arguments[1], "--verbose", nullptr);
        ::_exit(127);
    }
    // Until the compositor has taken in all that the mouse did: it tells of this click after that.
    // Away from the edge, where the program's strip takes clicks.
    const auto settle = [&] {
        const auto presses = [&] { return left->report().buttons + right->report().buttons; };
        const int before = presses();
        mouse.push(-10, 10);
        mouse.press(true);
        mouse.press(false);
        return until([&] { return presses() > before; });
    };
    // The cursor rests meanwhile: it is held where it is found.
    tell(until([&] { return holds(arguments[1]); }), "the program holds the first monitor");
    right = witness(1);
    const auto outside = [&](const std::string& how) {
        const bool settled = settle();
        const auto report = right->report();
        tell(settled && report.entered == 0, how + ": " + std::to_string(report.entered) +
                                                 " times outside, " +
                                                 std::to_string(report.seconds) + " s");
        right = witness(1);
    };
    for (const int dx : {5, 20, 120}) {
        mouse.push(-120, 40);
        mouse.push(dx, 300);
        outside("free, " + std::to_string(dx) + " counts each 4 ms");
    }
    mouse.push(-40, 20);
    mouse.press(true);
    mouse.push(40, 200);
    mouse.press(false);
    outside("with a button down");
    Mouse second("second mouse");
    mouse.push(-40, 20);
    const double before = left->report().lastX;
    tell(until([&] {
             second.push(40, 5);
             return left->report().lastX > before || right->report().entered > 0;
         }),
         "a mouse that comes later moves the cursor");
    second.push(40, 300);
    outside("a mouse that came later");

    tell(::waitpid(program, nullptr, WNOHANG) == 0, "the program has lived until now");
    ::kill(program, SIGKILL);
    ::waitpid(program, nullptr, 0);
    tell(reaches(mouse, *right, 40), "kill -9 of the program lets the mouse go");
    tell(reaches(mouse, *left, -40) && reaches(second, *right, 40), "and the later one");
    return allPassed ? 0 : 1;
}
