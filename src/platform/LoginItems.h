#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// What starts when the user logs in. Main thread. A failure is logged and otherwise ignored.
class LoginItems {
  public:
    struct ListItem {
        std::uint64_t id = 0;
        std::optional<std::string> path; ///< nothing when it cannot be resolved
    };

    virtual ~LoginItems() = default;

    /// Switches the helper application with that bundle identifier on or off.
    virtual void setEnabled(const std::string& helperIdentifier, bool enabled) = 0;

    /// Whether the session keeps a list of its own beside the helpers.
    virtual bool hasSessionList() = 0;

    /// The list as it stands, in its order.
    virtual std::vector<ListItem> sessionList() = 0;

    /// Puts a path behind the last item, also when it is there already.
    virtual void insertLast(const std::string& path) = 0;

    /// Takes one item out; an unknown one is ignored.
    virtual void remove(const ListItem& item) = 0;
};

} // namespace platform
