#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace platform::linux {

/// The session's language as a bare code ("it" for "it_IT.UTF-8"): the first one of LANGUAGE that
/// `hasTexts` knows, else that of LC_ALL, LC_MESSAGES or LANG, whichever is set first; "en" where
/// that has no texts. LANGUAGE does not count in the "C" locale.
std::string sessionLanguage(const std::function<bool(std::string_view)>& hasTexts);

/// The language that the user prefers, whether or not anything is written in it: the first one of
/// LANGUAGE, else that of the locale as above; "en" in the "C" locale.
std::string preferredLanguage();

} // namespace platform::linux
