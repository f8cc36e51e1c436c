#pragma once

#include "platform/Bundle.h"
#include "platform/Displays.h"
#include "platform/InputEvents.h"
#include "platform/Value.h"
#include "platform/json/Writer.h"
#include "scenario/Names.h"

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace record {

namespace names = scenario::names;
using platform::json::Member;

/// Writes what happens in a session as a scenario that palisor-replay plays: one step a line, with
/// the time that passed between them. Each line is in the file as soon as it is written, so that a
/// crash loses nothing. Main thread.
class ScenarioWriter {
  public:
    /// Replaces the file.
    explicit ScenarioWriter(const std::string& path);

    /// False when the file cannot be written.
    bool good() const { return file.good(); }

    /// What the session starts with. Numbers, texts and flags of the settings; the user's
    /// shortcut; the screens.
    void begin(const platform::Bundle& bundle, const platform::Dictionary& settings,
               const platform::Displays& displays);

    /// `step(names::pointer, Member{names::at, point})`
    template <class... T>
    void step(std::string_view name, const Member<T>&... members) {
        passTime();
        write(name, members...);
    }

    void screens(const platform::Displays& displays);
    void input(const platform::InputEvent& event);

  private:
    using Clock = std::chrono::steady_clock;

    void passTime();
    template <class... T>
    void write(std::string_view name, const Member<T>&... members) {
        file << object(Member{names::step, name}, members...).text << std::endl;
    }

    std::ofstream file;
    std::optional<Clock::time_point> last; ///< when the last step was; nothing before the launch
};

} // namespace record
