#pragma once

#include "app/Control.h"
#include "bus/Link.h"
#include "platform/Capabilities.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bus {

/// The program as others on the session bus see it: com.tamberlo.Product1 on its object.
/// `resources/bus` describes it. What others ask for is done between two messages; what changes is
/// announced from the run loop, soon after it has. Main thread.
class ProductObject final : private Link::User, private palisor::control::Watcher {
  public:
    /// The report, or a sentence why there is none.
    struct Report {
        std::optional<std::string> text;
        std::string why;
    };

    struct Program {
        std::string name;                                ///< on the bus
        std::string version;                             ///< for people
        std::function<palisor::AppDelegate*()> delegate; ///< null before it has started
        std::function<platform::Capabilities()> capabilities;
        std::function<void()> showMenu; ///< these two return at once
        std::function<void()> quit;
        std::function<void(std::function<void(const Report&)> done)> report; ///< `done` once, later
    };

    /// What is lent must outlive the object.
    ProductObject(Program program, Link& link);
    ~ProductObject() override;

    /// The application object is there, and is watched; null before it goes.
    void watch(palisor::AppDelegate* delegate);

    /// What the session told of itself may no longer be true.
    void capabilitiesChanged() { changed(); }

  private:
    friend struct ProductMembers;

    void attach(sd_bus& bus) override;
    void turn() override;
    void changed() override;
    void crossed(std::string_view from, std::string_view to) override;

    palisor::control::State state() const;
    void announce();
    /// Has it done by a program that has started, after the message; errors are answered.
    int whenStarted(sd_bus_message& call,
                    const std::function<int(sd_bus_message&, palisor::AppDelegate&)>& work);
    int checkArguments(sd_bus_message& call) const;

    Program program;
    std::string path;
    Link& link;
    Slot object, check;
    palisor::AppDelegate* watched = nullptr;
    palisor::control::State told; ///< what was announced last
    platform::Capabilities toldCapabilities;
    std::vector<std::pair<std::string, std::string>> crossings; ///< to be announced
};

} // namespace bus
