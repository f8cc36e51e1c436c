#pragma once

#include <string>
#include <vector>

namespace doctor {

enum class Level {
    ok,
    note,    ///< works, but a person may wonder
    trouble, ///< something does not work as it should
};

/// What a check has found. Texts are English, without a full stop at their ends.
struct Finding {
    std::string key; ///< stays the same from version to version
    Level level = Level::ok;
    std::string says{};
    std::string mend{};      ///< the command or step that puts it right; empty for none
    std::string privately{}; ///< goes behind what it says, but into no bug report
};

struct Report {
    std::string product; ///< as its command is named
    std::string title;   ///< for people
    std::string version;
    std::vector<Finding> findings;
};

bool isWell(const Report& report);

/// One line a finding, and the verdict in the last one.
std::string asText(const Report& report);
/// One line a finding: what was done. One line too where nothing was.
std::string asRescueText(const Report& report);

/// One object in one line, for a bug report: it tells neither who the user is nor what the machine
/// is called, and no path of the user's.
std::string asJson(const Report& report);

/// The text without the names of the user, of the home folder and of the machine.
std::string withoutPrivateThings(std::string text);

} // namespace doctor
