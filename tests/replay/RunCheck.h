#pragma once

#include "platform/Geometry.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace palisor {

/// A pointer event of a scenario.
struct PointerStep {
    platform::Point at; ///< top-left coordinates
    std::string type;
    bool isOnAScreen = false;
};

/// Reads what a run prints, line by line, and finds what breaks a rule that holds for every run.
/// The first screen is 1080 points high, and the service does not answer.
class RunCheck {
  public:
    /// `steps` has, for each record of the fields, the pointer event that alone lies between it and
    /// the record before.
    RunCheck(unsigned variant, bool isOn, std::vector<std::optional<PointerStep>> steps)
        : product(variant), on(isOn), events(std::move(steps)) {}

    /// What is wrong with the line, or with what it tells about the ones before; empty for nothing.
    std::string read(const std::string& line);

    /// How often a pointer event had each outcome: "inside", "put back", "crossed", "off".
    std::map<std::string, int> outcomes;

  private:
    std::string effect(const std::string& line);
    std::string timer(const std::string& line) const;
    std::string timers(const std::string& line) const;
    std::string write(const std::string& line);
    std::string warped(const std::string& line);
    std::string fields(const std::string& line);
    std::string pointer(const PointerStep& step, const std::string& before,
                        const std::string& after);
    std::string held(const PointerStep& step, const std::string& before, const std::string& after);
    int count(std::string_view effect) const;

    unsigned product;
    bool on;
    std::vector<std::optional<PointerStep>> events;
    std::size_t records = 0;
    std::string lastFields;
    std::vector<std::string> since; ///< the effects after them
    std::string unsaved;            ///< the key of a write that is not synchronised yet
    std::string previous;           ///< the line before
    bool ends = false;              ///< switched off twice, which only a single monitor does
    std::set<std::string> dark;     ///< windows on screen, by id
    int hidden = 0;
    int assertions = 0;
};

} // namespace palisor
