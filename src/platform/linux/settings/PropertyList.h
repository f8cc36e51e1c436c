#pragma once

#include "platform/Value.h"
#include "platform/linux/settings/PropertyListCheck.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform::linux {

/// What a property list holds under one key.
struct ListEntry {
    std::optional<Value> value; ///< nothing where the type is none of ours
    std::string foreign;        ///< then the value itself, as a property list of its own

    bool operator==(const ListEntry&) const = default;
};

using PropertyList = std::map<std::string, ListEntry, std::less<>>;

struct ReadPropertyList {
    Wholeness wholeness = Wholeness::damaged;
    PropertyList list; ///< empty when damaged
};

/// Reads an XML property list. A text of nothing but blanks is an empty list.
ReadPropertyList readPropertyList(std::string_view text);

/// The list as XML; nothing when the memory for it is missing. Texts end at their first NUL.
std::optional<std::string> writePropertyList(const PropertyList& list);

} // namespace platform::linux
