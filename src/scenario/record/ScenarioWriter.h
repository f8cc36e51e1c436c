#pragma once

#include "platform/Bundle.h"
#include "platform/Displays.h"
#include "platform/InputEvents.h"
#include "platform/Value.h"
#include "platform/memory/Json.h"

#include <chrono>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

namespace record {

/// Writes what happens in a session as a scenario that palisor-replay plays: one step a line, with
/// the time that passed between them. Each line is in the file as soon as it is written, so that a
/// crash loses nothing. Main thread.
class ScenarioWriter {
  public:
    /// Replaces the file.
    explicit ScenarioWriter(const std::string& path);

    /// False when the file cannot be written.
    bool good() const { return file.good(); }

    /// What the session starts with. Numbers, texts and flags of the settings; a recorded shortcut;
    /// the screens.
    void begin(const platform::Bundle& bundle, const platform::Dictionary& settings,
               const platform::Displays& displays);

    /// `step("cursor", Member{"at", point})`
    template <class... T>
    void step(std::string_view name, const platform::memory::Member<T>&... members) {
        passTime();
        std::string line = R"({"do":)";
        platform::memory::writeJson(line, name);
        (platform::memory::writeMember(line, members.name, members.value), ...);
        write(line + "}");
    }

    void screens(const platform::Displays& displays);
    void input(const platform::InputEvent& event);

  private:
    using Clock = std::chrono::steady_clock;

    void passTime();
    void write(const std::string& line);

    std::ofstream file;
    Clock::time_point last{};
    bool launched = false;
};

} // namespace record
