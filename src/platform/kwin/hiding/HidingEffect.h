#pragma once

#include "platform/kwin/script/Script.h"

#include <optional>

namespace platform::kwin {

/// The compositor's own effect that hides a cursor which rests, with a time of the program's. The
/// user's file of settings has that time only while the compositor reads it, and the script takes
/// the effect back when the program is no more. Main thread.
class HidingEffect {
  public:
    /// What is lent must outlive the object. `folder` is for what has to be undone after a kill.
    HidingEffect(Script& script, bus::Link& link, Log& log, const std::string& folder);

    /// From now on a cursor is hidden that has rested for so many seconds, 1 and more; with nothing
    /// it is as the user has it. Waits for the compositor's answers, for a second each at most.
    void set(std::optional<int> seconds);
    /// A script was loaded, perhaps into another compositor.
    void again();

  private:
    /// Announced is what the script is told of first, which then takes it back.
    enum class Stage { off, announced, on };

    void apply();
    void change();
    void fail();
    bool call(const char* method, bool* answer = nullptr);
    bool reconfigure(bool isOurs);

    Script& script;
    bus::Link& link;
    Log& log;
    std::string record; ///< what the file was, while it is another
    std::optional<int> wanted;
    Stage stage = Stage::off; ///< on is with the program's time
    int announced = 0;        ///< so many times
    bool isOurs = false;      ///< it was not loaded
    bool isLeaving = false;   ///< what the script was told last has not been heard of yet
    bool hasFailed = false;
};

} // namespace platform::kwin
