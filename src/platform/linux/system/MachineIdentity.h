#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::linux {

/// The machine's id, hashed for one application so that no other one's tells it: the HMAC-SHA256 of
/// the application's identifier under the machine's id as key, cut to a random UUID's form. Nothing
/// where that is no machine id: 32 hexadecimal digits, as in /etc/machine-id.
std::optional<std::string> machineIdentity(std::string_view machineId,
                                           std::string_view application);

} // namespace platform::linux
