#pragma once

#include "platform/Value.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform::linux {

/// What a property list holds under one key.
struct ListEntry {
    std::optional<Value> value; ///< nothing where the type is none of ours
    std::string foreign;        ///< then its lines in a written list

    bool operator==(const ListEntry&) const = default;
};

using PropertyList = std::map<std::string, ListEntry, std::less<>>;

enum class Wholeness {
    whole,
    repeatsKeys, ///< readable, but only the last of the values under one key can be kept
    blank,       ///< a text of nothing but blanks: an empty list, or all that is left of one
    damaged,
};

struct ReadPropertyList {
    Wholeness wholeness = Wholeness::damaged;
    PropertyList list; ///< empty when blank or damaged
};

/// Reads an XML property list in UTF-8 with a dictionary as its root. One that cannot be read
/// without losing something is damaged as a whole, and so is one with a control character in a key,
/// line breaks included.
ReadPropertyList readPropertyList(std::string_view text);

/// The list as XML. What XML cannot hold in a text (control characters, bytes that are no UTF-8)
/// and what `readPropertyList` refuses in a key becomes U+FFFD.
std::string writePropertyList(const PropertyList& list);

} // namespace platform::linux
