#pragma once

#include "platform/Json.h"

#include <optional>
#include <string>

// How a value of the action service's reply reads. The reply may come from anybody, so that each of
// its places may hold any type, or nothing, which is a null pointer here.

namespace palisor {

/// A text as it is, and a number by its digits; nothing for any other type.
std::optional<std::string> replyText(const platform::JsonValue* value);

/// A boolean as it is, a number as "not zero", a text by what it begins with; otherwise false.
bool replyBool(const platform::JsonValue* value);

/// A number without its fraction, held at the 32-bit limits, a text by its leading digits, a
/// boolean as 0 or 1; otherwise 0.
int replyInt(const platform::JsonValue* value);

} // namespace palisor
