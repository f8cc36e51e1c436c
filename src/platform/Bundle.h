#pragma once

#include <string>
#include <string_view>

namespace platform {

/// What the product ships with: its information dictionary and its localised texts. Reads of the
/// dictionary are look-ups in memory that allocate nothing. Any thread.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// An integer of the information dictionary; 0 when it is absent or cannot be read.
    virtual int integer(std::string_view key) const = 0;

    /// A text of the information dictionary; empty when it is absent or not a text.
    virtual std::string_view string(std::string_view key) const = 0;

    std::string identifier() const { return std::string(string("CFBundleIdentifier")); }
    std::string displayName() const { return std::string(string("CFBundleDisplayName")); }
    std::string version() const { return std::string(string("CFBundleShortVersionString")); }

    /// Where the product is installed: its login item, and what is inside, begins with this.
    virtual std::string path() const = 0;

    /// The text of a key in the session's language; the key itself where there is none.
    virtual std::string localizedString(std::string_view key) const = 0;
};

} // namespace platform
