#pragma once

#include <string>
#include <string_view>

namespace platform::memory {

/// The MD5 digest of the bytes as 32 lower-case hexadecimal digits. The codecs' contract
/// suite compares it with that of a library.
std::string md5Hex(std::string_view bytes);

} // namespace platform::memory
