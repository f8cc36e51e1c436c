#include "platform/linux/SessionLanguage.h"

#include <cstdlib>
#include <vector>

namespace platform::linux {

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view{} : value;
}

std::string_view bareCode(std::string_view locale) {
    return locale.substr(0, locale.find_first_of("_.@-"));
}

std::string_view sessionLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto value = variable(name); !value.empty()) return value;
    return "C";
}

/// The user's languages, best first; never empty.
std::vector<std::string_view> preferredCodes() {
    const auto own = bareCode(sessionLocale());
    if (own == "C" || own == "POSIX" || own.empty()) return {"en"};
    std::vector<std::string_view> codes;
    for (auto list = variable("LANGUAGE"); !list.empty();) {
        const auto next = list.find(':');
        if (const auto code = bareCode(list.substr(0, next)); !code.empty()) codes.push_back(code);
        list = next == std::string_view::npos ? std::string_view{} : list.substr(next + 1);
    }
    codes.push_back(own);
    return codes;
}

} // namespace

std::string sessionLanguage(const std::function<bool(std::string_view)>& hasTexts) {
    for (const auto code : preferredCodes())
        if (hasTexts(code)) return std::string(code);
    return "en";
}

std::string preferredLanguage() {
    return std::string(preferredCodes().front());
}

} // namespace platform::linux
