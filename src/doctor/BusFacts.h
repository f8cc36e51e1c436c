#pragma once

#include "platform/Capabilities.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>

namespace doctor {

/// A service of the session.
struct ServiceFacts {
    bool isThere = false;
    bool canStart = false; ///< the bus starts it when it is called
};

/// What the running program tells of itself.
struct ProgramTells {
    std::string shortcut{}; ///< as its menu writes it, empty for none
    platform::Capabilities capabilities{};
};

/// What GNOME Shell says of the extension that the program needs there.
enum class ShellExtension { noShell, notInstalled, notSeenYet, off, failed, otherRelease, on };

/// What the session bus tells.
struct BusFacts {
    enum class State { none, silent, answers };

    State state = State::none; ///< nothing else is there unless it answers
    ServiceFacts itemWatcher;  ///< of status notifier items
    bool hasItemHost = false;  ///< somebody shows those
    ServiceFacts notifications;
    ServiceFacts portal;
    bool portalHasSettings = false; ///< of a portal that is there
    ServiceFacts calendar;
    ShellExtension shellExtension = ShellExtension::noShell;
    std::optional<pid_t> program; ///< whose the product's name is
    bool programAnswers = false;
    std::optional<ProgramTells> told{}; ///< nothing of one that knows no such question
};

/// Asks everything at once and starts no service. What has not come by the deadline is as if it
/// were not there. `identifier` is the product's.
BusFacts askBus(const std::string& identifier, std::chrono::steady_clock::time_point deadline);

} // namespace doctor
