#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The few files that the program looks at itself. Main thread.
class Files {
  public:
    virtual ~Files() = default;

    /// The folder in which each application keeps its settings file; nothing where the user has
    /// none.
    virtual std::optional<std::string> preferencesFolder() const = 0;

    virtual bool exists(const std::string& path) const = 0;

    /// Where the user keeps documents, what was downloaded, and what lies on the desktop; nothing
    /// where the user has no folders.
    virtual std::optional<std::string> documentsFolder() const = 0;
    virtual std::optional<std::string> downloadsFolder() const = 0;
    virtual std::optional<std::string> desktopFolder() const = 0;

    /// Makes the folder and those above it; true when it is there afterwards.
    virtual bool makeFolder(const std::string& path) = 0;

    /// Puts the bytes in place of the file's, in one step; false, with the file as it was, when
    /// that fails.
    virtual bool write(const std::string& path, std::string_view bytes) = 0;

    /// Makes an empty file. A failure is logged by the platform and otherwise ignored.
    virtual void createEmpty(const std::string& path) = 0;
};

} // namespace platform
