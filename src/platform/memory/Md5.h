#pragma once

#include <string>
#include <string_view>

namespace platform::memory {

/// The MD5 digest of the bytes as 32 lower-case hexadecimal digits. The double's own, so that it
/// stands on the standard library; the suite that every codec passes compares it with a library's.
std::string md5Hex(std::string_view bytes);

} // namespace platform::memory
