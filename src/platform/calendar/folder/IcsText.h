#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::calendar {

/// The text of an .ics file, taken apart just far enough to change some of its lines and leave
/// every other byte as it is: a parser that writes a file anew folds and orders lines in its own
/// way.
class IcsText {
  public:
    struct Part {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    struct Property {
        std::string name; ///< in capitals
        Part lines;       ///< with the folded ones and the last line end
    };
    struct Event {
        Part all;
        Part endLine; ///< the line END:VEVENT
        std::vector<Property> properties;
        std::vector<Part> alarms;
    };

    // The library reads and frees nested components recursively, and takes quadratic time for the
    // lines of one.
    static constexpr std::size_t longest = std::size_t{4} * 1024 * 1024; ///< bytes
    static constexpr std::size_t deepest = 8;                            ///< an alarm is the third
    static constexpr std::size_t mostLines = 20'000;
    static constexpr std::size_t mostLinesOfOne = 2'000; ///< component

    /// Nothing where components begin or end in disorder, more than one calendar is there, or the
    /// text exceeds a limit; the text then has a reason.
    static std::optional<IcsText> parse(std::string text, std::string& reason);

    const std::string& text() const { return whole; }
    const std::vector<Event>& events() const { return parts; }

    /// Puts these alarms in the place of the event's. Later parts move: what is to be changed
    /// together is marked first and done by `changed`. Lines may end in either way.
    void setAlarms(std::size_t event, std::string_view alarms);
    /// Puts these lines in the place of the event's properties of those names.
    void setProperties(std::size_t event, const std::vector<std::string_view>& names,
                       std::string_view lines);
    void removeEvent(std::size_t event);

    /// The text with everything that was marked done.
    std::string changed() const;

  private:
    struct Edit {
        Part part;
        std::string text;
    };

    std::string withLineEnds(std::string_view lines) const;

    std::string whole;
    std::string lineEnd;
    std::vector<Event> parts;
    std::vector<Edit> edits;
};

} // namespace platform::calendar
