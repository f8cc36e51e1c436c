#pragma once

#include <optional>
#include <string>

namespace platform {

/// The few files that the program looks at itself. Main thread.
class Files {
  public:
    virtual ~Files() = default;

    /// The folder in which each application keeps its settings file; nothing where the user has
    /// none.
    virtual std::optional<std::string> preferencesFolder() const = 0;

    virtual bool exists(const std::string& path) const = 0;

    /// Makes an empty file. A failure is logged by the platform and otherwise ignored.
    virtual void createEmpty(const std::string& path) = 0;
};

} // namespace platform
