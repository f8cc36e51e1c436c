#pragma once

#include "doctor/BusFacts.h"
#include "doctor/WaylandFacts.h"
#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/login/AutostartItems.h"
#include "platform/x11/probe/ServerFacts.h"

#include <functional>
#include <future>

namespace doctor {

struct ProductFacts {
    std::string name; ///< as its command and its folder are named
    std::string title;
    std::string identifier;
    std::string version;
    int variant = 0;
};

struct SettingsFacts {
    enum class File { absent, whole, repeatsKeys, blank, damaged, foreign, unreadable };

    std::string path{}; ///< empty where the user has no folder for it
    File file = File::absent;
    bool canWrite = false;
    std::optional<platform::Shortcut> shortcut{}; ///< that is stored and on
};

/// The product itself, if it runs on this display, or on any where none is named.
struct RunningFacts {
    std::optional<pid_t> process{};
    bool isStopped = false;
};

/// All that the checks go by.
struct Facts {
    ProductFacts product{};

    // Of the environment.
    std::string display{};
    std::string waylandDisplay{};
    std::string sessionType{};
    std::string desktop{};

    bool serverAnswers = false; ///< or there is none
    platform::x11::ServerFacts server{};
    bool compositorAnswers = false; ///< or there is none
    WaylandFacts wayland{};
    BusFacts bus{};
    RunningFacts running{};
    SettingsFacts settings{};
    std::vector<platform::linux::AutostartItems::Entry> autostart{};
    std::vector<std::string> tools{};      ///< that run and move the cursor or change colours
    std::vector<std::string> keyHolders{}; ///< that run and may hold shortcuts
    bool hasCalendarModule = false;
    std::string calendarFolder{}; ///< that the product takes instead of a server; empty for none
    std::string system{}; ///< name and release of the distribution, of the kernel and the toolkit
};

/// How long everything may take that waits for others.
constexpr std::chrono::milliseconds patience{1800};

ProductFacts factsOf(const platform::linux::ProductBundle& bundle);

/// The files whose locks tell whether the product runs: those of the displays that are named here,
/// or those of all where none is named. They need not be there.
std::vector<std::string> locksOf(const std::string& identifier);

/// The entries of the product in the user's autostart folder.
platform::linux::AutostartItems autostartItems(const platform::linux::ProductBundle& bundle,
                                               const std::string& calendarFolder,
                                               platform::Log& log);

Facts gather(const platform::linux::ProductBundle& bundle, platform::Log& log);

/// Runs `work` on a thread of its own, which nobody has to wait for: it may go on for ever, so it
/// must own what it uses.
std::future<void> apart(std::function<void()> work);

} // namespace doctor
