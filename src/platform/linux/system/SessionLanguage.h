#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::linux {

/// The session's language as a bare code ("it" for "it_IT.UTF-8"): the first one of LANGUAGE that
/// `hasTexts` knows, else that of LC_ALL, LC_MESSAGES or LANG, whichever is set first; "en" where
/// that has no texts. LANGUAGE does not count in the "C" locale.
std::string sessionLanguage(const std::function<bool(std::string_view)>& hasTexts);

/// The session's languages as bare codes, preferred first: those of LANGUAGE, then the locale's
/// own; "en" alone in the "C" locale.
std::vector<std::string> sessionLanguages();

/// The country of LC_ALL, LC_ADDRESS or LANG, whichever is set first ("IT" for "it_IT.UTF-8");
/// nothing where that names none.
std::optional<std::string> sessionCountry();

} // namespace platform::linux
