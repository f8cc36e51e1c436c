#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Files of the Desktop Entry Specification: what a launcher, or the folder of programs that start
// with the session, is made of.

namespace platform::linux {

/// The group "Desktop Entry" of such a file. Everything else in the file, comments, other groups
/// and the order of the lines stays as it is.
class DesktopEntry {
  public:
    /// A text without the group has no values, and gets the group with the first one.
    explicit DesktopEntry(std::string_view text = {});

    bool hasGroup() const { return header.has_value(); }

    /// The value as it stands in the file; the last one where the key is there twice, as GLib has
    /// it. Nothing when it is absent.
    std::optional<std::string_view> raw(std::string_view key) const;

    /// A value of the type string with its escapes resolved; empty when it is absent.
    std::string string(std::string_view key) const;

    /// Whether the value is "true", or 1 as in old files.
    bool isTrue(std::string_view key) const;
    bool isFalse(std::string_view key) const;

    /// `value` with its escapes already in it. A new key goes behind the last line of the group.
    void setRaw(std::string_view key, std::string_view value);
    void setString(std::string_view key, std::string_view value);
    void erase(std::string_view key);

    /// "key=value" for each key of the group, in the order of the file.
    std::vector<std::string> lines() const;

    std::string text() const;

  private:
    std::optional<std::size_t> find(std::string_view key) const;
    std::size_t endOfGroup() const;

    std::vector<std::string> fileLines;
    std::optional<std::size_t> header; ///< the line of the group's name
};

/// The value of "Exec" for a command that is passed to no shell: every argument arrives as it is
/// given, whatever characters it has.
std::string execValue(const std::vector<std::string>& command);

/// The arguments of a value of "Exec" (its escapes as a string resolved already), quotes removed
/// and without the field codes such as %U; nothing when the quotes do not match.
std::optional<std::vector<std::string>> execArguments(std::string_view value);

} // namespace platform::linux
