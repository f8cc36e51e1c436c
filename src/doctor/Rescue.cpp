#include "doctor/Rescue.h"

#include "doctor/Facts.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/processes/Processes.h"
#include "platform/sway/undo/UndoFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <utility>

namespace doctor {

namespace {

namespace lnx = platform::linux;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto answerTime = 2s; ///< that a program which is well has
constexpr auto endTime = 3s;    ///< to save the settings and undo everything
constexpr auto serverTime = 2s;

/// Programs of ours that have a product's lock.
constexpr std::array<std::string_view, 2> ours = {"palisor", "palisor-tray"};

/// Whether it is the program on this display, does not answer, and is ours to end.
enum class Found { none, well, unknown, stuck, foreign };

class Program {
  public:
    Program(const ProductFacts& served, std::string lockFile)
        : product(served), lock(std::move(lockFile)) {}

    Found look();
    /// The one that was found.
    Finding end() const;
    std::string which() const { return " (process " + std::to_string(process->id()) + ")"; }

  private:
    bool hasLock() const { return lnx::holderOf(lock) == process->id(); }

    const ProductFacts& product;
    std::string lock;
    std::optional<lnx::OtherProcess> process;
};

Found Program::look() {
    const auto holder = lnx::holderOf(lock);
    if (!holder) return Found::none;
    process.emplace(*holder);
    // It may have gone since, and the number be another's.
    if (!*process || !hasLock()) return Found::none;
    if (std::ranges::find(ours, process->executable()) == ours.end()) return Found::foreign;
    if (process->isStopped()) return Found::stuck;
    const BusFacts bus = askBus(product.identifier, Clock::now() + answerTime);
    if (bus.program != *holder) return Found::unknown;
    return bus.programAnswers ? Found::well : Found::stuck;
}

// Who is only stopped can still end in order, once it goes on.
Finding Program::end() const {
    Finding finding{.key = "program", .privately = which()};
    const bool told = process->signal(SIGTERM);
    process->signal(SIGCONT);
    std::string how = "SIGTERM";
    bool gone = told && process->endsWithin(endTime);
    if (!gone) {
        how = "SIGKILL";
        gone = process->signal(SIGKILL) && process->endsWithin(endTime);
    }
    if (gone) {
        finding.says = product.title + " did not answer and was ended with " + how +
                       "; the cursor is free and seen";
        return finding;
    }
    finding.level = Level::trouble;
    finding.says = product.title + " does not answer and cannot be ended";
    finding.mend = "log out and in again";
    return finding;
}

void rescueProgram(const ProductFacts& product, const std::string& lock,
                   std::vector<Finding>& done) {
    Program program(product, lock);
    switch (program.look()) {
    case Found::none:
        return;
    case Found::well:
        done.push_back({.key = "program",
                        .level = Level::note,
                        .says = product.title + " runs and answers, and was left alone",
                        .privately = program.which()});
        return;
    case Found::unknown:
        done.push_back({.key = "program",
                        .level = Level::note,
                        .says = product.title +
                                " runs and cannot be asked over the session bus "
                                "whether it is well; it was left alone, and kill would end it",
                        .privately = program.which()});
        return;
    case Found::foreign:
        done.push_back(
            {.key = "program",
             .level = Level::trouble,
             .says = "another program holds the lock of " + product.title + ", and was left alone",
             .mend = "end it by hand",
             .privately = program.which()});
        return;
    case Found::stuck:
        done.push_back(program.end());
    }
}

// The guard of a program that was just ended puts them back by itself.
void rescueColours(std::vector<Finding>& done) {
    const auto folder = lnx::runtimeFolder();
    if (!folder) return;
    auto bright = std::make_shared<std::atomic<bool>>(false);
    const auto answered =
        apart([bright, folder = *folder] { *bright = platform::x11::brighten(folder); });
    if (answered.wait_for(serverTime) != std::future_status::ready)
        done.push_back({.key = "colours",
                        .level = Level::trouble,
                        .says = "the X server does not answer, so no colours were put back",
                        .mend = "log out and in again"});
    else if (*bright)
        done.push_back(
            {.key = "colours",
             .says = "the colours of the monitors that were left dark have been put back"});
}

// The same with what was left in a compositor.
void rescueCompositor(std::vector<Finding>& done) {
    using platform::sway::Undone;
    const auto folder = lnx::runtimeFolder();
    const auto undone = folder ? platform::sway::undoLeft(*folder) : Undone::nothing;
    if (undone == Undone::done)
        done.push_back({.key = "compositor",
                        .says = "the mouse, the cursor and the keys that were left held, hidden or "
                                "bound in sway are as you configured them"});
    else if (undone == Undone::silent)
        done.push_back({.key = "compositor",
                        .level = Level::trouble,
                        .says = "sway does not answer, so nothing was put back there",
                        .mend = "log out and in again"});
}

using Entry = lnx::AutostartItems::Entry;

bool isStale(const Entry& entry) {
    return !entry.isThere && !entry.command.empty();
}

/// What a helper's entry hands on to the product.
std::string calendarFolderIn(const std::vector<Entry>& entries) {
    constexpr std::string_view option = "--calendar";
    for (const Entry& entry : entries) {
        const auto found = std::ranges::find(entry.command, option);
        if (found != entry.command.end() && found + 1 != entry.command.end()) return *(found + 1);
    }
    return {};
}

Finding mended(const Entry& before, const std::vector<Entry>& now) {
    Finding finding{.key = "autostart"};
    const std::string was =
        before.path + " started " + before.command.front() + ", which is not there";
    const auto entry = std::ranges::find(now, before.path, &Entry::path);
    if (before.isEdited) {
        finding.level = Level::trouble;
        finding.says = was + "; it was left alone, since you have edited it";
        finding.mend = "mend its line Exec, or delete it";
    } else if (entry == now.end()) {
        finding.says = was + "; it has gone";
    } else if (entry->isThere) {
        finding.says = was + "; it starts " + entry->command.front() + " now";
    } else if (::unlink(before.path.c_str()) == 0) {
        finding.says = was + "; it has been deleted";
    } else {
        finding.level = Level::trouble;
        finding.says = was + ", and cannot be deleted: " + std::strerror(errno);
        finding.mend = "delete it";
    }
    return finding;
}

void rescueAutostart(const lnx::ProductBundle& bundle, platform::Log& log,
                     std::vector<Finding>& done) {
    const auto before = autostartItems(bundle, {}, log).entries();
    if (std::ranges::none_of(before, isStale)) return;
    auto items = autostartItems(bundle, calendarFolderIn(before), log);
    items.bringUpToDate();
    const auto now = items.entries();
    for (const Entry& entry : before)
        if (isStale(entry)) done.push_back(mended(entry, now));
}

} // namespace

Report rescue(const lnx::ProductBundle& bundle, platform::Log& log) {
    const ProductFacts product = factsOf(bundle);
    Report report{product.name, product.title, product.version, {}};
    for (const std::string& lock : locksOf(product.identifier))
        rescueProgram(product, lock, report.findings);
    rescueColours(report.findings);
    rescueCompositor(report.findings);
    rescueAutostart(bundle, log, report.findings);
    return report;
}

} // namespace doctor
